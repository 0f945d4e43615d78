#include "AutoROIWidgetForm.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QLocale>
#include <QScrollArea>
#include <QWidget>

void AutoROIWidgetForm::setupUi(QWidget* widget)
{
    if (widget->objectName().isEmpty()) {
        widget->setObjectName(QString::fromUtf8("AutoROIWidget"));
    }
    widget->resize(519, 909);
    QSizePolicy widgetPolicy(QSizePolicy::MinimumExpanding, QSizePolicy::Preferred);
    widgetPolicy.setHeightForWidth(widget->sizePolicy().hasHeightForWidth());
    widget->setSizePolicy(widgetPolicy);
    widget->setLocale(QLocale(QLocale::English, QLocale::UnitedStates));

    gridLayout = new QGridLayout(widget);
    gridLayout->setObjectName(QString::fromUtf8("gridLayout"));
    gridLayout->setSizeConstraint(QLayout::SetMinAndMaxSize);

    scrollArea = new QScrollArea(widget);
    scrollArea->setObjectName(QString::fromUtf8("scrollArea"));
    scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scrollArea->setWidgetResizable(true);

    scrollAreaWidgetContents = new QWidget();
    scrollAreaWidgetContents->setObjectName(QString::fromUtf8("scrollAreaWidgetContents"));
    scrollAreaWidgetContents->setGeometry(QRect(0, 0, 495, 885));

    gridLayout_2 = new QGridLayout(scrollAreaWidgetContents);
    gridLayout_2->setObjectName(QString::fromUtf8("gridLayout_2"));

    gb_AutoROI = new QGroupBox(scrollAreaWidgetContents);
    gb_AutoROI->setObjectName(QString::fromUtf8("gb_AutoROI"));
    QSizePolicy groupPolicy(QSizePolicy::Minimum, QSizePolicy::MinimumExpanding);
    groupPolicy.setHeightForWidth(gb_AutoROI->sizePolicy().hasHeightForWidth());
    gb_AutoROI->setSizePolicy(groupPolicy);
    gb_AutoROI->setMinimumSize(QSize(350, 500));
    gb_AutoROI->setMaximumSize(QSize(16777215, 900));

    gridLayout_5 = new QGridLayout(gb_AutoROI);
    gridLayout_5->setObjectName(QString::fromUtf8("gridLayout_5"));

    grid_AutoROI = new QGridLayout();
    grid_AutoROI->setObjectName(QString::fromUtf8("grid_AutoROI"));
    grid_AutoROI->setSizeConstraint(QLayout::SetDefaultConstraint);
    gridLayout_5->addLayout(grid_AutoROI, 1, 0, 1, 1);

    gb_ExposureAuto = new QGroupBox(gb_AutoROI);
    gb_ExposureAuto->setObjectName(QString::fromUtf8("gb_ExposureAuto"));
    gb_ExposureAuto->setMinimumSize(QSize(0, 100));
    gb_ExposureAuto->setMaximumSize(QSize(16777215, 100));

    gridLayout_3 = new QGridLayout(gb_ExposureAuto);
    gridLayout_3->setObjectName(QString::fromUtf8("gridLayout_3"));

    grid_ImageFormat = new QGridLayout();
    grid_ImageFormat->setObjectName(QString::fromUtf8("grid_ImageFormat"));
    gridLayout_3->addLayout(grid_ImageFormat, 0, 0, 1, 1);

    gridLayout_5->addWidget(gb_ExposureAuto, 2, 0, 1, 1);
    gridLayout_2->addWidget(gb_AutoROI, 1, 0, 1, 1);
    scrollArea->setWidget(scrollAreaWidgetContents);
    gridLayout->addWidget(scrollArea, 1, 0, 1, 1);

    widget->setWindowTitle(QCoreApplication::translate("AutoROIWidget", "Form"));
    gb_AutoROI->setTitle(QCoreApplication::translate("AutoROIWidget", "Autofunction AOI"));
    gb_ExposureAuto->setTitle(QCoreApplication::translate("AutoROIWidget", "Exposure Auto"));

    QMetaObject::connectSlotsByName(widget);
}
