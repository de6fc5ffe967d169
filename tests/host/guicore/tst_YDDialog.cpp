#include "guicore/YDDialog.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

namespace {

/// Calls `action` from the event loop, once the dialog is seen.
template <class Action>
void WhenShown(YDDialog& dialog, Action action)
{
    auto* const timer = new QTimer(&dialog);
    QObject::connect(timer, &QTimer::timeout, &dialog, [timer, &dialog, action] {
        if (!dialog.isVisible())
            return;
        timer->stop();
        action();
    });
    timer->start(0);
}

} // namespace

class TestYDDialog : public QObject
{
    Q_OBJECT

private slots:
    void ReturnsTheResultOfItsClosing_data();
    void ReturnsTheResultOfItsClosing();
    void IsModalAsAsked_data();
    void IsModalAsAsked();
    void ReturnsZeroWhenHidden();
    void ReturnsZeroWhenDestroyed();
    void IsDestroyedWhenClosedIfItShouldBe();
    void RunsInsideTheLoopOfAnother();
    void IsNotExecutedTwiceAtOnce();
    void CanBeExecutedAgain();
    void CanBeClosedWhileItIsShown();
};

void TestYDDialog::ReturnsTheResultOfItsClosing_data()
{
    QTest::addColumn<QString>("way");
    QTest::addColumn<int>("expected");
    QTest::newRow("accept") << "accept" << 1;
    QTest::newRow("reject") << "reject" << 0;
    QTest::newRow("window closed") << "close" << 0;
    QTest::newRow("escape") << "escape" << 0;
    QTest::newRow("a code of its own") << "done" << 7;
}

void TestYDDialog::ReturnsTheResultOfItsClosing()
{
    QFETCH(QString, way);
    QFETCH(int, expected);
    for (const bool modal : {false, true}) {
        YDDialog dialog;
        WhenShown(dialog, [&] {
            if (way == QLatin1String("accept"))
                dialog.accept();
            else if (way == QLatin1String("reject"))
                dialog.reject();
            else if (way == QLatin1String("close"))
                dialog.close();
            else if (way == QLatin1String("escape"))
                QTest::keyClick(&dialog, Qt::Key_Escape);
            else
                dialog.done(7);
        });
        QCOMPARE(dialog.Exec(modal), expected);
        QVERIFY(!dialog.isVisible());
    }
}

void TestYDDialog::IsModalAsAsked_data()
{
    QTest::addColumn<bool>("modal");
    QTest::addColumn<Qt::WindowModality>("expected");
    QTest::newRow("modal") << true << Qt::ApplicationModal;
    QTest::newRow("not modal") << false << Qt::NonModal;
}

void TestYDDialog::IsModalAsAsked()
{
    QFETCH(bool, modal);
    QFETCH(Qt::WindowModality, expected);
    QWidget window;
    window.show();
    YDDialog dialog(&window);
    dialog.setWindowModality(Qt::WindowModal);
    Qt::WindowModality seen = Qt::WindowModal;
    QWidget* blocker = nullptr;
    WhenShown(dialog, [&] {
        seen = dialog.windowModality();
        blocker = QApplication::activeModalWidget();
        dialog.accept();
    });
    QCOMPARE(dialog.Exec(modal), 1);
    QCOMPARE(seen, expected);
    QCOMPARE(blocker, modal ? &dialog : nullptr);
    QCOMPARE(dialog.windowModality(), Qt::WindowModal);
}

void TestYDDialog::ReturnsZeroWhenHidden()
{
    YDDialog dialog;
    dialog.setResult(1);
    WhenShown(dialog, [&] { dialog.hide(); });
    QCOMPARE(dialog.Exec(true), 0);
}

void TestYDDialog::ReturnsZeroWhenDestroyed()
{
    for (const bool modal : {false, true}) {
        auto* const dialog = new YDDialog;
        WhenShown(*dialog, [dialog] { dialog->deleteLater(); });
        QCOMPARE(dialog->Exec(modal), 0);
        QWidget parent;
        auto* const child = new YDDialog(&parent);
        QTimer::singleShot(0, &parent, [child] { delete child; });
        QCOMPARE(child->Exec(modal), 0);
    }
}

void TestYDDialog::IsDestroyedWhenClosedIfItShouldBe()
{
    const QPointer<YDDialog> dialog = new YDDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    WhenShown(*dialog, [&] { dialog->accept(); });
    QCOMPARE(dialog->Exec(true), 1);
    QVERIFY(!dialog);
}

void TestYDDialog::RunsInsideTheLoopOfAnother()
{
    YDDialog outer;
    YDDialog inner(&outer);
    int innerResult = -1;
    WhenShown(outer, [&] {
        WhenShown(inner, [&] {
            outer.done(3); // ends only when the inner one does
            QTimer::singleShot(0, &inner, &QDialog::accept);
        });
        innerResult = inner.Exec(true);
    });
    QCOMPARE(outer.Exec(true), 3);
    QVERIFY(innerResult == 1 || innerResult == 0); // hidden along with its parent, or accepted before
    QVERIFY(!inner.isVisible());
}

void TestYDDialog::IsNotExecutedTwiceAtOnce()
{
    YDDialog dialog;
    int second = -1;
    WhenShown(dialog, [&] {
        second = dialog.Exec(true);
        dialog.accept();
    });
    QCOMPARE(dialog.Exec(true), 1);
    QCOMPARE(second, 0);
}

void TestYDDialog::CanBeExecutedAgain()
{
    YDDialog dialog;
    for (const int code : {1, 0, 1}) {
        WhenShown(dialog, [&] { dialog.done(code); });
        QCOMPARE(dialog.Exec(true), code);
    }
}

void TestYDDialog::CanBeClosedWhileItIsShown()
{
    class Impatient : public YDDialog
    {
    protected:
        void showEvent(QShowEvent* event) override
        {
            YDDialog::showEvent(event);
            accept();
        }
    };
    Impatient dialog;
    QCOMPARE(dialog.Exec(true), 1);
}

QTEST_MAIN(TestYDDialog)
#include "tst_YDDialog.moc"
