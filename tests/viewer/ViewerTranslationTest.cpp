#include "FeatureTableModel.h"
#include "ViewerWindow.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableView>
#include <QTranslator>

#include <gtest/gtest.h>

namespace {

// What the window says in its own words: titles, labels, buttons, hints, page
// names and the feature table's headings and yes/no column, not the camera's
// names and values.
QStringList WindowTexts()
{
    ViewerWindow window({}, false);
    window.OpenCamera("dsp");
    QStringList texts{window.windowTitle()};
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        texts << widget->windowTitle();
        if (QLabel* label = qobject_cast<QLabel*>(widget)) {
            texts << label->text();
        } else if (QAbstractButton* button = qobject_cast<QAbstractButton*>(widget)) {
            texts << button->text();
        } else if (QLineEdit* edit = qobject_cast<QLineEdit*>(widget)) {
            texts << edit->placeholderText();
        } else if (QTabWidget* tabs = qobject_cast<QTabWidget*>(widget)) {
            texts << tabs->tabText(0);
        }
    }
    const QAbstractItemModel* model = window.findChild<QTableView*>("features")->model();
    for (int column = 0; column < model->columnCount(); ++column) {
        texts << model->headerData(column, Qt::Horizontal).toString();
    }
    texts << model->index(0, FeatureTableModel::WritableColumn).data().toString();
    texts.removeAll(QString());
    return texts;
}

} // namespace

TEST(ViewerTranslation, GermanWindowKeepsNoEnglishText)
{
    const QStringList english = WindowTexts();
    QTranslator german;
    ASSERT_TRUE(german.load(QLocale(QLocale::German, QLocale::Germany), "tabviewer", "_",
                            TAB_TRANSLATIONS_DIR));
    QCoreApplication::installTranslator(&german);
    const QStringList inGerman = WindowTexts();
    QCoreApplication::removeTranslator(&german);

    ASSERT_FALSE(english.isEmpty());
    EXPECT_EQ(inGerman.size(), english.size());
    for (const QString& text : inGerman) {
        EXPECT_FALSE(english.contains(text)) << qPrintable(text);
    }
}
