#ifndef AUTOROIWIDGETFORM_H
#define AUTOROIWIDGETFORM_H

class QGridLayout;
class QGroupBox;
class QScrollArea;
class QWidget;

// The fixed skeleton of the auto AOI tab: a scroll area holding the region
// group box, with the Exposure Auto group box inside it, and empty grids
// that the editor fills for the camera at hand. Each pointer's name is also
// its object's objectName.
class AutoROIWidgetForm
{
public:
    void setupUi(QWidget* widget);

    QGridLayout* gridLayout = nullptr;
    QScrollArea* scrollArea = nullptr;
    QWidget* scrollAreaWidgetContents = nullptr;
    QGridLayout* gridLayout_2 = nullptr;
    QGroupBox* gb_AutoROI = nullptr;
    QGridLayout* gridLayout_5 = nullptr;
    QGridLayout* grid_AutoROI = nullptr;
    QGroupBox* gb_ExposureAuto = nullptr;
    QGridLayout* gridLayout_3 = nullptr;
    QGridLayout* grid_ImageFormat = nullptr;
};

#endif
