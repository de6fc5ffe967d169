#include "TestColors.h"
#include "gui/KVColorDialog.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace {

/// Runs `act` in the dialog's event loop, once the dialog is shown.
void InTheLoop(KVColorDialog& dialog, const std::function<void()>& act)
{
    QTimer::singleShot(0, &dialog, [&dialog, act] {
        QVERIFY(dialog.isVisible());
        QVERIFY(dialog.isModal());
        act();
    });
}

/// Types a level into one of the dialog's boxes, as a user does.
void TypeLevel(KVColorDialog& dialog, const QString& label, int level)
{
    QSpinBox* box = nullptr;
    const auto labels = dialog.findChildren<QLabel*>();
    for (const QLabel* const each : labels)
        if (each->text().remove(QLatin1Char('&')) == label)
            box = qobject_cast<QSpinBox*>(each->buddy());
    QVERIFY2(box, qPrintable(label));
    box->setValue(level);
}

} // namespace

class TestKVColorDialog : public QObject
{
    Q_OBJECT

private slots:
    void HoldsTheColourAsItWasGiven_data();
    void HoldsTheColourAsItWasGiven();
    void ShowsTheColourThatItWasGiven();
    void SaysSoWhileTheUserPicks();
    void ThePickIsGivenBackAndOpaque();
    void ExecSaysWhetherTheUserAccepted_data();
    void ExecSaysWhetherTheUserAccepted();
    void GoesWithItsParentWhileItIsOpen();
    void IsADialogWhateverItsFlags_data();
    void IsADialogWhateverItsFlags();
};

void TestKVColorDialog::HoldsTheColourAsItWasGiven_data()
{
    QTest::addColumn<QColor>("color");
    QTest::newRow("opaque") << QColor(255, 210, 255);
    QTest::newRow("translucent") << QColor(1, 2, 3, 77);
    QTest::newRow("another model") << QColor::fromHsv(10, 20, 30);
    QTest::newRow("none") << QColor();
    QTest::newRow("no numbers") << TestColors::NoNumbers();
    QTest::newRow("far out") << TestColors::FarOut();
    QTest::newRow("no model there is") << TestColors::OfNoModel();
}

void TestKVColorDialog::HoldsTheColourAsItWasGiven()
{
    QFETCH(QColor, color);
    KVColorDialog dialog;
    const QSignalSpy changes(&dialog, &KVColorDialog::ColorChanged);
    dialog.SetColor(color);
    QCOMPARE(TestColors::Stored(dialog.GetColor()), TestColors::Stored(color));
    InTheLoop(dialog, [&dialog] { dialog.accept(); });
    QCOMPARE(dialog.Exec(), 1);
    QCOMPARE(TestColors::Stored(dialog.GetColor()), TestColors::Stored(color));
    QCOMPARE(changes.count(), 0);
}

void TestKVColorDialog::ShowsTheColourThatItWasGiven()
{
    KVColorDialog dialog;
    QCOMPARE(dialog.GetColor(), dialog.currentColor());
    QVERIFY(dialog.testOption(QColorDialog::DontUseNativeDialog));
    dialog.SetColor(QColor(10, 20, 30, 40));
    QCOMPARE(dialog.currentColor(), QColor(10, 20, 30));
    dialog.SetColor(TestColors::FarOut());
    QCOMPARE(dialog.currentColor(), QColor(255, 0, 255));
}

void TestKVColorDialog::SaysSoWhileTheUserPicks()
{
    KVColorDialog dialog;
    dialog.SetColor(QColor(10, 20, 30));
    QSignalSpy changes(&dialog, &KVColorDialog::ColorChanged);
    InTheLoop(dialog, [&] {
        TypeLevel(dialog, QStringLiteral("Red:"), 200);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.takeFirst().at(0).value<QColor>(), QColor(200, 20, 30));
        TypeLevel(dialog, QStringLiteral("Blue:"), 7);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes.takeFirst().at(0).value<QColor>(), QColor(200, 20, 7));
        dialog.SetColor(QColor(1, 1, 1)); // not the user's
        QCOMPARE(changes.count(), 0);
        dialog.reject();
    });
    QCOMPARE(dialog.Exec(), 0);
}

void TestKVColorDialog::ThePickIsGivenBackAndOpaque()
{
    KVColorDialog dialog;
    dialog.SetColor(QColor(10, 20, 30, 40));
    InTheLoop(dialog, [&] {
        TypeLevel(dialog, QStringLiteral("Green:"), 99);
        dialog.accept();
    });
    QCOMPARE(dialog.Exec(), 1);
    QCOMPARE(dialog.GetColor(), QColor(10, 99, 30));
}

void TestKVColorDialog::ExecSaysWhetherTheUserAccepted_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("result");
    QTest::newRow("accepted") << int(QDialogButtonBox::Ok) << 1;
    QTest::newRow("cancelled") << int(QDialogButtonBox::Cancel) << 0;
}

void TestKVColorDialog::ExecSaysWhetherTheUserAccepted()
{
    QFETCH(int, button);
    QFETCH(int, result);
    QWidget parent;
    auto* const dialog = new KVColorDialog(&parent);
    for (int round = 0; round < 2; ++round) { // it can be run again
        InTheLoop(*dialog, [&] {
            QCOMPARE(QApplication::activeModalWidget(), dialog);
            dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::StandardButton(button))->click();
        });
        QCOMPARE(dialog->Exec(), result);
    }
}

void TestKVColorDialog::GoesWithItsParentWhileItIsOpen()
{
    auto parent = std::make_unique<QWidget>();
    const QPointer<KVColorDialog> dialog = new KVColorDialog(parent.get());
    QTimer::singleShot(0, this, [&] {
        QVERIFY(dialog->isVisible());
        parent.reset();
    });
    QCOMPARE(dialog->Exec(), 0);
    QVERIFY(!dialog);
}

void TestKVColorDialog::IsADialogWhateverItsFlags_data()
{
    QTest::addColumn<int>("flags");
    QTest::addColumn<int>("type");
    QTest::newRow("none") << 0 << int(Qt::Dialog);
    QTest::newRow("a hint alone") << int(Qt::WindowStaysOnTopHint) << int(Qt::Dialog);
    QTest::newRow("a tool window") << 11 << int(Qt::Tool);
}

void TestKVColorDialog::IsADialogWhateverItsFlags()
{
    QFETCH(int, flags);
    QFETCH(int, type);
    QWidget parent;
    const KVColorDialog dialog(&parent, Qt::WindowFlags(flags));
    QVERIFY(dialog.isWindow());
    QCOMPARE(int(dialog.windowType()), type);
    QCOMPARE(int(dialog.windowFlags()) & flags, flags);
}

QTEST_MAIN(TestKVColorDialog)
#include "tst_KVColorDialog.moc"
