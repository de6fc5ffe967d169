#include "gui/YDOperationProgressDlg.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <functional>

using Step = std::function<void(YDOperationProgressDlg&)>;
Q_DECLARE_METATYPE(Step)

class TestYDOperationProgressDlg : public QObject
{
    Q_OBJECT

private slots:
    void ClosesWithTheResultOfItsEnd_data();
    void ClosesWithTheResultOfItsEnd();
    void ReturnsAtOnceWhenTheEndCameBefore_data();
    void ReturnsAtOnceWhenTheEndCameBefore();
    void GoesOnWhileTheEndIsNotReached_data();
    void GoesOnWhileTheEndIsNotReached();
    void ShowsWhatItIsTold();
    void ShowsARangeWithoutExtentAsBusy();
    void KeepsItsWidth();
};

void TestYDOperationProgressDlg::ClosesWithTheResultOfItsEnd_data()
{
    QTest::addColumn<Step>("step");
    QTest::addColumn<int>("expected");
    QTest::newRow("range, then position") << Step([](YDOperationProgressDlg& d) {
        d.SetProgressRange(0, 100);
        d.SetProgressPos(100);
    }) << 1;
    QTest::newRow("position, then range") << Step([](YDOperationProgressDlg& d) {
        d.SetProgressPos(100);
        d.SetProgressRange(0, 100);
    }) << 1;
    QTest::newRow("button") << Step([](YDOperationProgressDlg& d) {
        QTest::mouseClick(d.findChild<QPushButton*>(QStringLiteral("m_pCancel")), Qt::LeftButton);
    }) << 0;
    QTest::newRow("escape") << Step([](YDOperationProgressDlg& d) { QTest::keyClick(&d, Qt::Key_Escape); })
                            << 0;
    QTest::newRow("window closed") << Step([](YDOperationProgressDlg& d) { d.close(); }) << 0;
    QTest::newRow("end after the abort") << Step([](YDOperationProgressDlg& d) {
        d.reject();
        d.SetProgressRange(0, 100);
        d.SetProgressPos(100);
    }) << 0;
}

void TestYDOperationProgressDlg::ClosesWithTheResultOfItsEnd()
{
    QFETCH(Step, step);
    QFETCH(int, expected);
    YDOperationProgressDlg dialog;
    bool wasVisible = false;
    QTimer::singleShot(0, &dialog, [&] {
        wasVisible = dialog.isVisible();
        step(dialog);
    });
    QCOMPARE(dialog.Exec(true), expected);
    QVERIFY(wasVisible);
    QVERIFY(!dialog.isVisible());
}

void TestYDOperationProgressDlg::ReturnsAtOnceWhenTheEndCameBefore_data()
{
    QTest::addColumn<bool>("rangeFirst");
    QTest::newRow("range first") << true;
    QTest::newRow("position first") << false;
}

void TestYDOperationProgressDlg::ReturnsAtOnceWhenTheEndCameBefore()
{
    QFETCH(bool, rangeFirst);
    YDOperationProgressDlg dialog;
    if (rangeFirst)
        dialog.SetProgressRange(0, 100);
    dialog.SetProgressPos(100);
    if (!rangeFirst)
        dialog.SetProgressRange(0, 100);
    const QSignalSpy finished(&dialog, &QDialog::finished);
    bool loopRan = false;
    QTimer::singleShot(0, &dialog, [&] { loopRan = true; });
    QCOMPARE(dialog.Exec(true), 1);
    QVERIFY(!loopRan);
    QCOMPARE(finished.count(), 0);
}

void TestYDOperationProgressDlg::GoesOnWhileTheEndIsNotReached_data()
{
    QTest::addColumn<int>("minimum");
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("position");
    QTest::newRow("not yet") << 0 << 100 << 99;
    QTest::newRow("another range") << 0 << 200 << 100;
    QTest::newRow("end of another range") << 0 << 200 << 200;
    QTest::newRow("another start") << 1 << 100 << 100;
    QTest::newRow("beyond") << 0 << 100 << 101;
    QTest::newRow("upside down") << 100 << 0 << 100;
}

void TestYDOperationProgressDlg::GoesOnWhileTheEndIsNotReached()
{
    QFETCH(int, minimum);
    QFETCH(int, maximum);
    QFETCH(int, position);
    YDOperationProgressDlg dialog;
    dialog.SetProgressRange(minimum, maximum);
    dialog.show();
    dialog.SetProgressPos(position);
    QVERIFY(dialog.isVisible());
    QTimer::singleShot(0, &dialog, &QDialog::reject);
    QCOMPARE(dialog.Exec(true), 0);
}

void TestYDOperationProgressDlg::ShowsWhatItIsTold()
{
    YDOperationProgressDlg dialog;
    dialog.SetLabel(QStringLiteral("<b>Levels</b>:"));
    dialog.SetProgressRange(10, 60);
    dialog.SetProgressPos(35);
    const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("m_pLabel"));
    const auto* const bar = dialog.findChild<QProgressBar*>(QStringLiteral("m_pProgress"));
    QCOMPARE(label->text(), QStringLiteral("<b>Levels</b>:"));
    QCOMPARE(label->textFormat(), Qt::PlainText);
    QCOMPARE(bar->minimum(), 10);
    QCOMPARE(bar->maximum(), 60);
    QCOMPARE(bar->value(), 35);
    dialog.SetProgressPos(1000);
    QCOMPARE(bar->value(), 60);
}

void TestYDOperationProgressDlg::ShowsARangeWithoutExtentAsBusy()
{
    YDOperationProgressDlg dialog;
    dialog.SetProgressRange(5, 5);
    const auto* const bar = dialog.findChild<QProgressBar*>(QStringLiteral("m_pProgress"));
    QCOMPARE(bar->minimum(), 0);
    QCOMPARE(bar->maximum(), 0);
}

void TestYDOperationProgressDlg::KeepsItsWidth()
{
    YDOperationProgressDlg dialog;
    dialog.SetLabel(QStringLiteral("Curves:"));
    dialog.show();
    const int width = dialog.width();
    QVERIFY(width >= 200);
    dialog.SetLabel(QStringLiteral("A name that is much longer than the others ").repeated(5));
    dialog.SetProgressRange(0, 1000000);
    dialog.SetProgressPos(500000);
    QCoreApplication::processEvents();
    QCOMPARE(dialog.width(), width);
    const auto* const label = dialog.findChild<QLabel*>(QStringLiteral("m_pLabel"));
    QVERIFY(label->height() >= label->heightForWidth(label->width())); // the whole text is seen
}

QTEST_MAIN(TestYDOperationProgressDlg)
#include "tst_YDOperationProgressDlg.moc"
