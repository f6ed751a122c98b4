#include "NamedChild.h"

#include <AxBaseUI/CAxBaseWidget.h>
#include <AxBaseUI/CAxMessageBox.h>
#include <AxBaseUI/CAxParameterEditPage.h>
#include <AxBaseUI/CAxProgressWgt.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QTranslator>

#include <gtest/gtest.h>

#include <functional>

namespace {
/// Runs the dialog and does something to it once it is up.
template <typename Dialog, typename... Arguments>
int execAnd(Dialog& dialog, const std::function<void()>& action, Arguments... arguments)
{
    QTimer::singleShot(0, &dialog, action);
    return dialog.exec(arguments...);
}

void click(const QWidget& dialog, const char* name)
{
    QTest::mouseClick(child<QPushButton>(dialog, name), Qt::LeftButton);
}

QString visibleButtons(const QWidget& dialog)
{
    QString names;
    for (const char* const name : {"m_pBtnOK", "m_pBtnCancel", "m_pBtnClose"})
        if (!child<QPushButton>(dialog, name)->isHidden() &&
            !child<QPushButton>(dialog, name)->parentWidget()->isHidden())
            names += QString::fromLatin1(name + 6) + QLatin1Char(' ');
    return names.trimmed();
}

/// A left-button event at a point of the widget; QTest's mouse moves need a real pointer.
void mouse(QWidget& widget, QEvent::Type type, const QPoint& place)
{
    const bool move = type == QEvent::MouseMove;
    QMouseEvent event(type, place, widget.mapToGlobal(place), move ? Qt::NoButton : Qt::LeftButton,
                      type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

QPoint drag(QWidget& widget, const QPoint& by)
{
    mouse(widget, QEvent::MouseButtonPress, QPoint(20, 10));
    mouse(widget, QEvent::MouseMove, QPoint(20, 10) + by);
    const QPoint place = widget.pos();
    mouse(widget, QEvent::MouseButtonRelease, QPoint(20, 10));
    mouse(widget, QEvent::MouseMove, QPoint(90, 90));
    EXPECT_EQ(widget.pos(), place) << "moved after the release";
    return place;
}
} // namespace

TEST(BaseDialog, AnyCombinationOfHiddenButtonsLeavesAWayOut)
{
    const struct
    {
        bool ok, cancel, close;
        const char* visible;
        int enter;
    } rows[] = {{false, false, false, "OK Cancel Close", QDialog::Accepted},
                {false, true, true, "OK", QDialog::Accepted},
                {false, true, false, "OK Close", QDialog::Accepted},
                {false, false, true, "OK Cancel", QDialog::Accepted},
                {true, false, false, "Cancel Close", QDialog::Rejected},
                {true, false, true, "Cancel", QDialog::Rejected},
                {true, true, false, "Close", QDialog::Rejected},
                {true, true, true, "Close", QDialog::Rejected}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.visible);
        CAxMessageBox box;
        box.SetBtnHidden(row.ok, row.cancel, row.close);
        EXPECT_EQ(execAnd(box,
                          [&] {
                              EXPECT_EQ(visibleButtons(box), QLatin1String(row.visible));
                              QTest::keyClick(&box, Qt::Key_Return);
                          }),
                  row.enter);
        EXPECT_EQ(execAnd(box, [&] { QTest::keyClick(&box, Qt::Key_Escape); }), QDialog::Rejected);
        EXPECT_EQ(execAnd(box, [&] { box.close(); }), QDialog::Rejected);
        const char* const first = row.ok ? row.cancel ? "m_pBtnClose" : "m_pBtnCancel" : "m_pBtnOK";
        EXPECT_EQ(execAnd(box, [&] { click(box, first); }), row.enter);
    }
}

TEST(BaseDialog, LooksTheSameOnDarkAndLightDesktops)
{
    const QPalette before = QApplication::palette();
    QImage pictures[2];
    int i = 0;
    for (const Qt::GlobalColor desktop : {Qt::white, Qt::black}) {
        QApplication::setPalette(QPalette(QColor(desktop)));
        CAxParameterEditPage page;
        page.SetWindowTitle(QStringLiteral("Polygon Info"));
        page.SetDialogInfo(QStringLiteral("Information"));
        page.SetElementName(QStringLiteral("Name:"), QStringLiteral("Area"));
        page.SetElement1Value(QStringLiteral("Quarry"), true);
        page.SetElement2Value(QStringLiteral("3.14"), false);
        page.ensurePolished();
        page.adjustSize();
        pictures[i++] = page.grab().toImage();
    }
    EXPECT_EQ(pictures[0], pictures[1]) << "the desktop's colours must not show through";
    QApplication::setPalette(before);
}

TEST(MessageBox, TakesLongTextAndMarkupAsTheyAre)
{
    CAxMessageBox box;
    box.SetIcon(QStringLiteral(":/no/such/picture.png"));
    EXPECT_TRUE(child<QLabel>(box, "m_pLabIcon")->isHidden());
    const auto* const label = child<QLabel>(box, "m_pLabText");
    box.SetMsgText(QStringLiteral("<b>Block</b> & Co"));
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    const int lineHeight = label->fontMetrics().height();
    box.SetMsgText(QStringLiteral("The route parameter error. ").repeated(30));
    box.SetDetails(QStringLiteral("Zone with a name\n").repeated(300));
    execAnd(box, [&] {
        EXPECT_LT(box.width(), 700);
        EXPECT_GT(label->height(), 5 * lineHeight);
        EXPECT_GE(label->height(), label->heightForWidth(label->width()));
        EXPECT_GT(child<QLabel>(box, "m_pLabDetails")->height(), child<QWidget>(box, "m_pDetails")->height())
            << "long details scroll";
        box.accept();
    });
}

TEST(ParameterEditPage, ReturnsTheTypedTextsUnchanged)
{
    CAxParameterEditPage page;
    page.SetElementName(QStringLiteral("Name:"), QStringLiteral("area (km^2):"));
    page.SetElement1Value(QStringLiteral("old"), true);
    page.SetElement2Value(QStringLiteral("3.14"), false);
    page.SetElementParas({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")},
                         {QStringLiteral("1"), QStringLiteral("2")}, {true});
    EXPECT_EQ(page.GetElementValues(), (QStringList{QStringLiteral("1"), QStringLiteral("2"), QString()}));
    const int result = execAnd(page, [&] {
        auto* const name = child<QLineEdit>(page, "m_pElement1");
        name->clear();
        QTest::keyClicks(name, QStringLiteral(" 1,5 x"));
        QTest::keyClicks(child<QLineEdit>(page, "m_pElement2"), QStringLiteral("9"));
        QTest::keyClicks(child<QLineEdit>(page, "m_pListElement0"), QStringLiteral("7"));
        QTest::keyClicks(child<QLineEdit>(page, "m_pListElement1"), QStringLiteral("7"));
        QTest::keyClick(name, Qt::Key_Return);
    });
    EXPECT_EQ(result, QDialog::Accepted);
    EXPECT_EQ(page.GetElement1Value(), QStringLiteral(" 1,5 x"));
    EXPECT_EQ(page.GetElement2Value(), QStringLiteral("3.14"));
    EXPECT_EQ(page.GetElementValues().mid(0, 2).join(QString()).size(), 3);
    EXPECT_EQ(page.GetElementValues()[1], QStringLiteral("2"));

    // What cannot be taken is framed until it changes, and the form begins with it.
    page.MarkWrong(2);
    page.MarkWrong(9);
    execAnd(page, [&] {
        auto* const wrong = child<QLineEdit>(page, "m_pListElement0");
        EXPECT_EQ(page.focusWidget(), wrong);
        EXPECT_EQ(wrong->selectedText(), wrong->text());
        EXPECT_TRUE(wrong->property("wrong").toBool());
        QTest::keyClicks(wrong, QStringLiteral("8"));
        EXPECT_FALSE(wrong->property("wrong").toBool());
        page.reject();
    });

    page.SetElementParas({QStringLiteral("d")}, {QStringLiteral("4")}, {true});
    EXPECT_EQ(page.GetElementValues(), QStringList{QStringLiteral("4")});
}

TEST(ParameterEditPage, EscapeIsNotTheRenamedCancelButton)
{
    CAxParameterEditPage page;
    page.SetOKCancelBtnVisible(true, true);
    EXPECT_EQ(execAnd(page, [&] { QTest::keyClick(&page, Qt::Key_Escape); }), QDialog::Rejected);
    page.SetBtnCancelText(QStringLiteral("Delete"));
    EXPECT_EQ(execAnd(page, [&] { QTest::keyClick(&page, Qt::Key_Escape); }),
              CAxParameterEditPage::CloseResult);
    EXPECT_EQ(execAnd(page, [&] { page.close(); }), CAxParameterEditPage::CloseResult);
    EXPECT_EQ(execAnd(page, [&] { click(page, "m_pBtnCancel"); }), QDialog::Rejected);
    page.SetOKCancelBtnVisible(true, false);
    EXPECT_EQ(visibleButtons(page), QStringLiteral("OK Close"));
}

TEST(MessageBox, EnterPressesCancelWhereOkTakesSomethingAway)
{
    for (const bool cancelFirst : {false, true}) {
        CAxMessageBox box;
        box.SetCancelDefault(cancelFirst);
        const int first = cancelFirst ? QDialog::Rejected : QDialog::Accepted;
        EXPECT_EQ(execAnd(box, [&] { QTest::keyClick(&box, Qt::Key_Return); }), first);
        box.SetBtnHidden(false, true, true);
        EXPECT_EQ(execAnd(box, [&] { QTest::keyClick(&box, Qt::Key_Return); }), QDialog::Accepted);
    }
}

TEST(BaseWidget, IsDraggedInsideItsParentWhileMovingIsEnabledAndADialogAnywhere)
{
    CAxMessageBox box;
    box.move(100, 100);
    box.show();
    const QPoint start = box.pos();
    EXPECT_EQ(drag(box, QPoint(30, 35)) - start, QPoint(30, 35));

    QWidget area;
    area.resize(400, 300);
    CAxBaseWidget panel(&area);
    panel.setGeometry(100, 100, 80, 40);
    area.show();
    EXPECT_EQ(drag(panel, QPoint(30, -20)), QPoint(130, 80));
    EXPECT_EQ(drag(panel, QPoint(1000, 1000)), QPoint(320, 260));
    panel.EnableMove(false);
    EXPECT_EQ(drag(panel, QPoint(-50, -50)), QPoint(320, 260));
}

TEST(ProgressWgt, StaysOpenWhenDoneUnlessItIsToClose)
{
    CAxProgressWgt manual(QStringLiteral("Upload"));
    manual.SetMaxValue(10);
    const int result = execAnd(
        manual,
        [&] {
            EXPECT_EQ(visibleButtons(manual), QStringLiteral("Close"));
            manual.SetValue(10);
            EXPECT_TRUE(manual.isVisible());
            EXPECT_EQ(visibleButtons(manual), QStringLiteral("OK Close"));
            click(manual, "m_pBtnOK");
        },
        false);
    EXPECT_EQ(result, QDialog::Accepted);
}

TEST(ProgressWgt, CancelAndRetryReachTheJob)
{
    CAxProgressWgt progress(QStringLiteral("Upload"));
    progress.SetMaxValue(3);
    progress.VisibleBtnCannel(true);
    progress.VisibleBtnRetry(true);
    QSignalSpy cancelled(&progress, &CAxProgressWgt::signalCancel);
    QSignalSpy retried(&progress, &CAxProgressWgt::signalRetry);
    const int result = execAnd(
        progress,
        [&] {
            EXPECT_EQ(child<QPushButton>(progress, "m_pBtnCancel")->text(), QStringLiteral("Cancel"));
            EXPECT_EQ(progress.focusWidget()->objectName(), QStringLiteral("m_pBtnCancel"));
            click(progress, "m_pBtnRetry");
            EXPECT_TRUE(progress.isVisible());
            QTest::keyClick(&progress, Qt::Key_Escape);
        },
        true);
    EXPECT_EQ(result, QDialog::Rejected);
    EXPECT_EQ(retried.size(), 1);
    EXPECT_EQ(cancelled.size(), 1);

    progress.SetValue(99);
    EXPECT_EQ(child<QProgressBar>(progress, "m_pBar")->value(), 3);
    EXPECT_EQ(progress.exec(true), QDialog::Accepted) << "already done";
}

TEST(Translation, IsEmbeddedAndChangesALiveDialog)
{
    QTranslator chinese;
    ASSERT_TRUE(chinese.load(QStringLiteral(":/i18n/axcompanion_zh_CN.qm")));
    CAxMessageBox box;
    EXPECT_EQ(child<QPushButton>(box, "m_pBtnOK")->text(), QStringLiteral("OK"));
    ASSERT_TRUE(QCoreApplication::installTranslator(&chinese));
    QCoreApplication::processEvents();
    EXPECT_EQ(child<QPushButton>(box, "m_pBtnOK")->text(), QString::fromUtf8("确定"));
    EXPECT_EQ(child<QPushButton>(box, "m_pBtnCancel")->text(), QString::fromUtf8("取消"));
    QCoreApplication::removeTranslator(&chinese);
}
