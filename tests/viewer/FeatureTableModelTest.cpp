#include "FeatureTableModel.h"
#include "SimFeatures.h"

#include <TarkaCPP/Sim/SimCamera.h>

#include <gtest/gtest.h>

namespace {

using KST::TrkAPI::Sim::Camera;

QString Cell(const FeatureTableModel& model, int row, int column)
{
    return model.data(model.index(row, column)).toString();
}

QStringList Row(const FeatureTableModel& model, int row)
{
    QStringList texts;
    for (int column = 0; column < FeatureTableModel::ColumnCount; ++column) {
        texts << Cell(model, row, column);
    }
    return texts;
}

// A model over a camera of one feature of each kind.
class FeatureTableModelTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        camera.AddInteger("Width", 640, 16, 1280, 16);
        camera.AddFloat("ExposureAutoMax", 500000.0, 41.0, 1e7);
        camera.AddBool("AutofunctionAOIEnable", true);
        camera.AddEnum("ExposureAutoTimebase", {"us", "ms"}, "us");
        camera.AddCommand("AcquisitionStart");
        camera.AddInteger("OffsetX", 0, 0, 100);
        camera.SetWritable("OffsetX", false);
    }

    Camera camera;
    FeatureTableModel model;
};

} // namespace

TEST_F(FeatureTableModelTest, ShowsEachKindOfFeatureAndLeavesFailedReadsEmpty)
{
    model.SetFeatures(MakeFeatureVector(camera));

    ASSERT_EQ(model.rowCount(), 6);
    EXPECT_EQ(model.columnCount(), 4);
    EXPECT_EQ(Row(model, 0), QStringList({"Width", "640", "16 .. 1280, step 16", "yes"}));
    EXPECT_EQ(Row(model, 1), QStringList({"ExposureAutoMax", "500000", "41 .. 1e+07", "yes"}));
    EXPECT_EQ(Row(model, 2), QStringList({"AutofunctionAOIEnable", "true", "", "yes"}));
    EXPECT_EQ(Row(model, 3), QStringList({"ExposureAutoTimebase", "us", "us, ms", "yes"}));
    EXPECT_EQ(Cell(model, 4, FeatureTableModel::ValueColumn), "(command)");
    // A step of 1 is no news, and a read-only feature says so.
    EXPECT_EQ(Row(model, 5), QStringList({"OffsetX", "0", "0 .. 100", "no"}));
    EXPECT_EQ(model.headerData(FeatureTableModel::RangeColumn, Qt::Horizontal).toString(), "Range");

    // Failed reads leave their cells empty, and no camera leaves no rows.
    camera.SetFailure("Width", KST::TrkAPI::Sim::Op::GetValue);
    camera.SetFailure("ExposureAutoMax", KST::TrkAPI::Sim::Op::GetRange);
    camera.SetFailure("ExposureAutoTimebase", KST::TrkAPI::Sim::Op::GetDataType);
    model.SetFeatures(MakeFeatureVector(camera));
    EXPECT_EQ(Row(model, 0), QStringList({"Width", "", "16 .. 1280, step 16", "yes"}));
    EXPECT_EQ(Cell(model, 1, FeatureTableModel::RangeColumn), "");
    EXPECT_EQ(Row(model, 3), QStringList({"ExposureAutoTimebase", "", "", "yes"}));
    model.SetFeatures(QSharedPointer<FeatureVector>());
    EXPECT_EQ(model.rowCount(), 0);
    model.Refresh();
    EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(FeatureTableModelTest, RefreshReportsOnlyTheRowsThatChanged)
{
    model.SetFeatures(MakeFeatureVector(camera));
    QVector<QPair<QModelIndex, QModelIndex>> changed;
    QObject::connect(&model, &FeatureTableModel::dataChanged,
                     [&](const QModelIndex& from, const QModelIndex& to) {
                         changed.append(qMakePair(from, to));
                     });
    int resets = 0;
    QObject::connect(&model, &FeatureTableModel::modelReset, [&]() { ++resets; });

    model.Refresh();
    EXPECT_EQ(changed.count(), 0);

    camera.SetFromCamera("Width", 320);
    camera.SetFromCamera("AutofunctionAOIEnable", false);
    model.Refresh();
    ASSERT_EQ(changed.count(), 2);
    EXPECT_EQ(changed.at(0).first.row(), 0);
    EXPECT_EQ(changed.at(1).first.row(), 2);
    EXPECT_EQ(changed.at(1).second.row(), 2);
    EXPECT_EQ(changed.at(1).second.column(), FeatureTableModel::ColumnCount - 1);
    EXPECT_EQ(Cell(model, 0, FeatureTableModel::ValueColumn), "320");
    EXPECT_EQ(Cell(model, 2, FeatureTableModel::ValueColumn), "false");

    // A range or writability change is a change of the row too.
    camera.SetWritable("OffsetX", true);
    model.Refresh();
    EXPECT_EQ(changed.count(), 3);
    EXPECT_EQ(Cell(model, 5, FeatureTableModel::WritableColumn), "yes");
    EXPECT_EQ(resets, 0);
}
