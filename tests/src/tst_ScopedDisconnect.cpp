#include "ScopedDisconnect.h"

#include <QSlider>
#include <QSpinBox>
#include <QTest>

#include <memory>

namespace {

/// Counts what it is told.
class Listener : public QObject
{
    Q_OBJECT

public:
    int Count() const { return m_count; }

public slots:
    void OnValueChanged(int) { ++m_count; }
    void OnOtherChanged(int) { m_count += 100; }

private:
    int m_count = 0;
};

} // namespace

class TestScopedDisconnect : public QObject
{
    Q_OBJECT

private slots:
    void TheSlotHearsNothingWithinTheScopeAndAllAfterIt();
    void OtherConnectionsStay();
    void OverloadedSignalsAreCut();
    void ManyConnectionsBecomeOne();
    void NestedScopesLeaveOneConnection();
    void NoConnectionIsMadeWhereNoneWas();
    void TheSenderMayGo();
    void TheReceiverMayGo();
};

void TestScopedDisconnect::TheSlotHearsNothingWithinTheScopeAndAllAfterIt()
{
    QSlider slider;
    Listener listener;
    connect(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    {
        const ScopedDisconnect quiet(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
        slider.setValue(5);
        QCOMPARE(listener.Count(), 0);
    }
    QCOMPARE(listener.Count(), 0);
    slider.setValue(6);
    QCOMPARE(listener.Count(), 1);
}

void TestScopedDisconnect::OtherConnectionsStay()
{
    QSlider slider;
    Listener listener;
    Listener bystander;
    connect(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    connect(&slider, &QSlider::valueChanged, &listener, &Listener::OnOtherChanged);
    connect(&slider, &QSlider::valueChanged, &bystander, &Listener::OnValueChanged);
    const ScopedDisconnect quiet(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    slider.setValue(5);
    QCOMPARE(listener.Count(), 100);
    QCOMPARE(bystander.Count(), 1);
}

void TestScopedDisconnect::OverloadedSignalsAreCut()
{
    QSpinBox spin;
    Listener listener;
    connect(&spin, QOverload<int>::of(&QSpinBox::valueChanged), &listener, &Listener::OnValueChanged);
    {
        const ScopedDisconnect quiet(&spin, QOverload<int>::of(&QSpinBox::valueChanged), &listener,
                                     &Listener::OnValueChanged);
        spin.setValue(5);
    }
    QCOMPARE(listener.Count(), 0);
    spin.setValue(6);
    QCOMPARE(listener.Count(), 1);
}

void TestScopedDisconnect::ManyConnectionsBecomeOne()
{
    QSlider slider;
    Listener listener;
    for (int i = 0; i < 3; ++i)
        connect(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    {
        const ScopedDisconnect quiet(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
        slider.setValue(5);
    }
    QCOMPARE(listener.Count(), 0);
    slider.setValue(6);
    QCOMPARE(listener.Count(), 1);
}

void TestScopedDisconnect::NestedScopesLeaveOneConnection()
{
    QSlider slider;
    Listener listener;
    connect(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    {
        const ScopedDisconnect outer(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
        {
            const ScopedDisconnect inner(&slider, &QSlider::valueChanged, &listener,
                                         &Listener::OnValueChanged);
            slider.setValue(4);
        }
        slider.setValue(5);
        QCOMPARE(listener.Count(), 0);
    }
    slider.setValue(6);
    QCOMPARE(listener.Count(), 1);
}

void TestScopedDisconnect::NoConnectionIsMadeWhereNoneWas()
{
    QSlider slider;
    Listener listener;
    {
        const ScopedDisconnect quiet(&slider, &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    }
    slider.setValue(5);
    QCOMPARE(listener.Count(), 0);
}

void TestScopedDisconnect::TheSenderMayGo()
{
    auto slider = std::make_unique<QSlider>();
    Listener listener;
    connect(slider.get(), &QSlider::valueChanged, &listener, &Listener::OnValueChanged);
    {
        const ScopedDisconnect quiet(slider.get(), &QSlider::valueChanged, &listener,
                                     &Listener::OnValueChanged);
        slider.reset();
    }
    QCOMPARE(listener.Count(), 0);
}

void TestScopedDisconnect::TheReceiverMayGo()
{
    QSlider slider;
    auto listener = std::make_unique<Listener>();
    connect(&slider, &QSlider::valueChanged, listener.get(), &Listener::OnValueChanged);
    {
        const ScopedDisconnect quiet(&slider, &QSlider::valueChanged, listener.get(),
                                     &Listener::OnValueChanged);
        listener.reset();
    }
    slider.setValue(5);
    QCOMPARE(slider.value(), 5);
}

QTEST_MAIN(TestScopedDisconnect)
#include "tst_ScopedDisconnect.moc"
