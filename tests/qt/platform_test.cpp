// The platform's own translations: message boxes, clipboard, file filters, text positions,
// tilings, the status clock and timers.
#include <QClipboard>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileDialog>
#include <QFontMetricsF>
#include <QLabel>
#include <QMessageBox>
#include <QPrinter>
#include <QPushButton>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>

#include <tuple>

#include "forms/control.h"
#include "forms/form.h"
#include "qt/file_filter.h"
#include "qt/printout.h"
#include "qt/shown_text.h"
#include "qt/status_clock.h"
#include "qt/tilings.h"
#include "qt/toolbar_icons.h"
#include "qt_test_support.h"

namespace marlune::qt::test {
namespace {

// Answers the message box that is about to open with `button`, noting its title, text, icon and buttons.
using SeenBox = std::tuple<QString, QString, QMessageBox::Icon, QMessageBox::StandardButtons>;

void Answer(QMessageBox::StandardButton button, SeenBox& seen)
{
    QTimer::singleShot(0, [button, &seen] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        seen = {box->windowTitle(), box->text(), box->icon(), box->standardButtons()};
        box->button(button)->click();
    });
}

TEST(Platform, MessageBoxesShowTitleTextIconAndButtonsAndReturnTheAnswer)
{
    QtDesk desk;
    SeenBox seen;
    Answer(QMessageBox::No, seen);
    EXPECT_EQ(forms::MsgBox("Store \x93"
                            "all\x94?",
                            forms::MessageButtons::YesNo, forms::MessageIcon::Question, "STORE MARLUNE DATA"),
              forms::MessageAnswer::No);
    EXPECT_EQ(seen, SeenBox("STORE MARLUNE DATA", QString::fromUtf8("Store “all”?"), QMessageBox::Question,
                            QMessageBox::Yes | QMessageBox::No));
    // An error box has only OK and the application's title.
    Answer(QMessageBox::Ok, seen);
    EXPECT_EQ(forms::MsgBox("Error Communication!"), forms::MessageAnswer::OK);
    EXPECT_EQ(seen, SeenBox("Marlune Desk", "Error Communication!", QMessageBox::NoIcon, QMessageBox::Ok));
}

// A store asks before it replaces a data file; a restore, chosen in a save dialog too, takes the
// file that is there without a question.
TEST(Platform, FileDialogsShowTitleAndFilterAskToReplaceOnlyWhenToldAndAddTheirExtension)
{
    QtDesk desk;
    const QString there = QDir::temp().filePath(QStringLiteral("marlune-platform-test.dat"));
    QFile(there).open(QIODevice::WriteOnly);
    for (const bool askToReplace : {true, false}) {
        QString title;
        QStringList filters;
        bool asks = false;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
            ASSERT_NE(dialog, nullptr);
            title = dialog->windowTitle();
            filters = dialog->nameFilters();
            asks = !dialog->testOption(QFileDialog::DontConfirmOverwrite);
            // The name as typed, without its extension.
            dialog->selectFile(there.chopped(4));
            asks ? dialog->reject() : static_cast<QDialog*>(dialog)->accept();
        });
        const forms::FileDialogResult result = desk.platform.fileDialog(
                {"Restore Marlune Data", "Marlune Program Files (*.dat)|*.dat", "*.dat", true, askToReplace, "dat"});
        EXPECT_EQ(title, "Restore Marlune Data");
        EXPECT_EQ(filters, QStringList{"Marlune Program Files (*.dat)"});
        EXPECT_EQ(asks, askToReplace);
        EXPECT_EQ(result.fileName, askToReplace ? "" : there.toStdString());
    }
    QFile::remove(there);
}

TEST(Platform, TheClipboardHoldsDesktopLinesGivesBackTheProgramsLinesAndRefusesWhatTheyCannotHold)
{
    QtDesk desk;
    desk.platform.setClipboardText("a\r\nb\xe9");
    EXPECT_EQ(QApplication::clipboard()->text(), QString::fromUtf8("a\nbé"));
    QApplication::clipboard()->setText(QString::fromUtf8("x\ny€"));
    EXPECT_EQ(desk.platform.clipboardText(), "x\r\ny\x80");
    // A character the code page cannot hold gives no text at all, and says which it is.
    SeenBox seen;
    Answer(QMessageBox::Ok, seen);
    QApplication::clipboard()->setText(QString::fromUtf8("V\uff21R"));
    EXPECT_FALSE(desk.platform.clipboardText());
    EXPECT_TRUE(std::get<1>(seen).startsWith(QStringLiteral("The character U+FF21 ")))
            << std::get<1>(seen).toStdString();
}

class Clocked final : public forms::Form {
public:
    Clocked() : forms::Form("Clocked", "Clocked") {}
    forms::Timer& Timer1 = add<forms::Timer>("Timer1", 1);
};

// A window unloaded by its own timer while a box, a file dialog or a modal form stands on it takes
// that along: the question reads as No, the file dialog as cancelled, and the form unloads instead
// of waiting, windowless, for an unload that nobody can give.
TEST(Platform, WhatStandsOnAWindowThatUnloadsUnderItEndsAsDeclined)
{
    QtDesk desk;
    for (const std::string standing : {"message box", "file dialog", "modal form"}) {
        SCOPED_TRACE(standing);
        Clocked owner;
        Clocked inner;
        owner.Timer1.onTick = [&] {
            if (QApplication::activeModalWidget() != desk.platform.window(owner))
                owner.unload();
        };
        bool declined = false;
        QTimer::singleShot(0, [&] {
            if (standing == "message box")
                declined = forms::MsgBox("Store?", forms::MessageButtons::YesNo) == forms::MessageAnswer::No;
            else if (standing == "file dialog")
                declined = desk.platform.fileDialog({"Open", "*.dat|*.dat", "", false, false, "dat"}).outcome
                           == forms::FileDialogResult::Outcome::Cancelled;
            else {
                forms::ShowModal(inner, &owner);
                declined = !inner.loaded();
            }
        });
        forms::ShowModal(owner, nullptr);
        QApplication::processEvents();
        EXPECT_TRUE(declined);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    }
}

TEST(Platform, AOneMillisecondTimerTicksThroughTheModel)
{
    QtDesk desk;
    Clocked form;
    int ticks = 0;
    QEventLoop loop;
    form.Timer1.onTick = [&] {
        if (++ticks == 3) {
            form.unload();
            loop.quit();
        }
    };
    QTimer::singleShot(5000, &loop, &QEventLoop::quit); // a bound, so that a dead timer fails
    form.load();
    loop.exec();
    EXPECT_EQ(ticks, 3);
}

TEST(FileFilter, PairsOfDescriptionAndPatternsBecomeQtFilters)
{
    EXPECT_EQ(QtNameFilters("Marlune Program Files (*.dat)|*.dat|Projects|*.prj|Text|*.txt;*.lst|Other"),
              (QStringList{"Marlune Program Files (*.dat)", "Projects (*.prj)", "Text (*.txt *.lst)", "Other (*)"}));
    EXPECT_TRUE(QtNameFilters("").isEmpty());
}

TEST(Printout, TheHeadingStandsBoldAboveTheTextLineForLineInAFixedPitchFontAndEachJobIsAPdfOfItsOwn)
{
    const auto document = Printout(QStringLiteral("Marlune Motion Program 1"), QStringLiteral("X1\n  Y2"));
    QStringList lines;
    std::vector<bool> bold;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        lines << block.text();
        bold.push_back(block.begin().fragment().charFormat().fontWeight() == QFont::Bold);
    }
    EXPECT_EQ(lines, (QStringList{"Marlune Motion Program 1", "X1", "  Y2"}));
    EXPECT_EQ(bold, (std::vector<bool>{true, false, false}));
    // By the glyphs, not the font's own claim: some fixed pitch fonts do not make it.
    const QFontMetricsF metrics(document->defaultFont());
    EXPECT_EQ(metrics.horizontalAdvance(QLatin1Char('i')), metrics.horizontalAdvance(QLatin1Char('W')));
    QTemporaryDir dir;
    QPrinter printer;
    printer.setOutputFileName(dir.filePath(QStringLiteral("program.pdf")));
    document->print(&printer);
    QFile pdf(printer.outputFileName());
    ASSERT_TRUE(pdf.open(QIODevice::ReadOnly));
    EXPECT_TRUE(pdf.read(5) == "%PDF-");
    EXPECT_EQ((QStringList{JobFileName("/out/print.pdf", 1), JobFileName("/out/print.pdf", 3),
                           JobFileName("/out/v1.2/print", 2)}),
              (QStringList{"/out/print.pdf", "/out/print-3.pdf", "/out/v1.2/print-2"}));
}

// A drawn tool bar picture is drawn anew for a screen of twice the density, not blown up; the
// suite's run at scale 2 shows it.
TEST(ToolbarIcon, IsDrawnSharpForTwiceThePixelDensity)
{
    if (qGuiApp->devicePixelRatio() < 2)
        GTEST_SKIP() << "a plain screen draws the plain picture only";
    const QIcon icon = ToolbarIcon(QStringLiteral("Print"));
    const QImage sharp = icon.pixmap(QSize(32, 32), 2.0).toImage();
    EXPECT_EQ(sharp.size(), QSize(64, 64));
    const QImage plain = icon.pixmap(QSize(32, 32), 1.0).toImage();
    EXPECT_NE(sharp, plain.scaled(64, 64, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    EXPECT_NE(sharp, plain.scaled(64, 64));
}

TEST(ShownText, MultiLineBoxesShowLfAndKeepCaretsOnTheSameCharacters)
{
    const std::string text = "Ready:\r\r\nSEND :?\r\n";
    EXPECT_EQ(ShownText(text, true), "Ready:\nSEND :?\n");
    EXPECT_EQ(ShownText(text, false), QString::fromStdString(text));
    // Before the line break the caret stands before its CRs; at the end it is the end.
    EXPECT_EQ((std::vector{ModelPosition(text, 6, true), ModelPosition(text, 7, true), ModelPosition(text, 15, true)}),
              (std::vector{6, 9, static_cast<int>(text.size())}));
    for (int shown = 0; shown <= 15; ++shown)
        EXPECT_EQ(ShownPosition(text, ModelPosition(text, shown, true), true), shown);
}

TEST(Tilings, TilesFillTheAreaWithTheSparePixelsFirstAndIconsWrapUpwardsFromTheBottom)
{
    const QRect area(10, 20, 301, 100);
    EXPECT_EQ(TileVertically(area, 3),
              (std::vector<QRect>{QRect(10, 20, 101, 100), QRect(111, 20, 100, 100), QRect(211, 20, 100, 100)}));
    EXPECT_EQ(TileHorizontally(area, 3),
              (std::vector<QRect>{QRect(10, 20, 301, 34), QRect(10, 54, 301, 33), QRect(10, 87, 301, 33)}));
    EXPECT_TRUE(TileVertically(area, 0).empty());
    EXPECT_EQ(IconPositions(QRect(0, 0, 250, 400), QSize(100, 30), 3),
              (std::vector<QPoint>{QPoint(0, 370), QPoint(100, 370), QPoint(0, 340)}));
    EXPECT_TRUE(IconPositions(QRect(0, 0, 250, 400), QSize(0, 30), 2).empty());
}

TEST(StatusClock, PanelsChangeOnlyWhenTheirTextDoes)
{
    QStatusBar bar;
    StatusClock clock(bar);
    const QDateTime noon(QDate(2024, 3, 9), QTime(12, 0, 5));
    clock.show(noon);
    // The same minute shows the same text; the next minute and the same minute a day later do not.
    EXPECT_EQ((std::vector<bool>{clock.show(noon.addSecs(10)), clock.show(noon.addSecs(60)),
                                 clock.show(noon.addSecs(60).addDays(1))}),
              (std::vector<bool>{false, true, true}));
}

} // namespace
} // namespace marlune::qt::test
