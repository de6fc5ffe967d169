#pragma once

#include "PanelKit.h"
#include "TestPictures.h"
#include "YDRecord.h"

#include <QSignalSpy>
#include <QVector>

#include <limits>

/// What holds for the panels of stamp and text alike: margins, blending, and that they compute nothing.
///
/// `Fixture` holds a panel as `widget`, its spin boxes as `left`, `top`, `right`, `bottom` and `opacity`, its
/// list of modes as `blending`, and what it announces as `changes`.
namespace OverlayPanelChecks {

inline void AddModes()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("mode");
    const QVector<int> modes{0, 13, 14, 15, 22, 23, 17, 16, 21, 20, 18, 19, 12};
    for (int index = 0; index < modes.size(); ++index)
        QTest::newRow(qPrintable(QString::number(index))) << index << modes.at(index);
}

/// Each mode is stored by its value and shown by its index.
template <class Fixture>
void BlendingModesGoRound()
{
    QFETCH(int, index);
    QFETCH(int, mode);
    Fixture f;
    f.blending->setCurrentIndex(index == 0 ? 1 : 0);
    f.blending->setCurrentIndex(index);
    const auto params = f.widget.GetValue();
    QCOMPARE(params.blendingMode, mode);
    Fixture other;
    other.widget.SetValue(params);
    QCOMPARE(other.blending->currentIndex(), index);
}

template <class Fixture>
void AnIndexThatThereIsNotIsTheNormalMode()
{
    Fixture f;
    for (const int index : {-1, 13, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
        f.widget.OnBlendingModeChanged(12);
        QCOMPARE(f.widget.GetValue().blendingMode, 12);
        f.widget.OnBlendingModeChanged(index);
        QCOMPARE(f.widget.GetValue().blendingMode, 0);
    }
    QCOMPARE(f.changes.Take(), PanelKit::Changes(8));
}

inline void AddUnknownModes()
{
    QTest::addColumn<int>("mode");
    for (const int mode : {1, 11, 24, -1, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
        QTest::newRow(qPrintable(QString::number(mode))) << mode;
}

/// A mode that is in no list is kept, and shown as the normal one.
template <class Fixture>
void AnUnknownModeStaysUntilAnotherIsChosen()
{
    QFETCH(int, mode);
    Fixture f;
    f.blending->setCurrentIndex(4);
    auto params = f.widget.GetValue();
    params.blendingMode = mode;
    f.widget.SetValue(params);
    QCOMPARE(f.blending->currentText(), QStringLiteral("Normal"));
    QCOMPARE(f.widget.GetValue().blendingMode, mode);
    f.opacity->setValue(3);
    QCOMPARE(f.widget.GetValue().blendingMode, mode);
    f.blending->setCurrentIndex(1);
    QCOMPARE(f.widget.GetValue().blendingMode, 13);
}

/// The spin boxes of the margins surround a middle.
template <class Fixture>
void TheMarginsLieAsTheyAre()
{
    Fixture f;
    f.widget.show();
    QVERIFY(f.top->geometry().bottom() < f.left->geometry().top());
    QVERIFY(f.left->geometry().right() < f.right->geometry().left());
    QCOMPARE(f.left->y(), f.right->y());
    QVERIFY(f.bottom->geometry().top() > f.left->geometry().bottom());
    QCOMPARE(f.top->x(), f.bottom->x());
}

/// The margins are no rectangle: the left one may be greater than the right one.
template <class Fixture>
void MarginsAreFourNumbers()
{
    Fixture f;
    f.left->setValue(900);
    f.right->setValue(3);
    f.top->setValue(800);
    f.bottom->setValue(0);
    const auto params = f.widget.GetValue();
    QCOMPARE(params.margins.left(), 900);
    QCOMPARE(params.margins.right(), 3);
    QCOMPARE(params.margins.top(), 800);
    QCOMPARE(params.margins.bottom(), 0);
    QCOMPARE(f.changes.Take(), PanelKit::Changes(4));
    Fixture other;
    other.widget.SetValue(params);
    QCOMPARE(other.left->value(), 900);
    QCOMPARE(other.right->value(), 3);
    QCOMPARE(PanelKit::Written(other.widget.GetValue()), PanelKit::Written(params));
}

/// Whoever hands the panel a picture, or waits for it, is not left waiting.
template <class Fixture>
void APictureStartsNothing()
{
    Fixture f;
    QSignalSpy ready(&f.widget, &YDAdjustmentWidget::ImageReady);
    f.widget.SetImage(TestPictures::Noise(40, 30), {}, {}, {});
    f.widget.StartProcessing();
    QVERIFY(f.widget.WaitForProcessingFinished(false));
    QVERIFY(f.widget.WaitForProcessingFinished(true));
    f.widget.SetCancelProcessing(false);
    f.left->setValue(9);
    f.widget.RestartProcessing();
    f.widget.FlushPendingChange();
    QVERIFY(f.widget.WaitForProcessingFinished(false));
    QCoreApplication::processEvents();
    QCOMPARE(ready.count(), 0);
    QVERIFY(f.widget.AdjustedImage().IsEmpty());
    f.widget.ClearData();
    QVERIFY(YDRecord::Equal(f.widget.GetValue(), decltype(f.widget.GetValue())()));
}

} // namespace OverlayPanelChecks
