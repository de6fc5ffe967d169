#include "ControlLinks.h"

#include "ScopedDisconnect.h"

#include <QSlider>
#include <QSpinBox>
#include <QStringList>
#include <QTest>

#include <memory>
#include <utility>

namespace {

/// A panel of two controls that notes which of its slots are called, in their order.
struct Panel : public QObject
{
    Q_OBJECT

public:
    Panel()
    {
        links.Add(slider.get(), &QSlider::valueChanged, this, &Panel::OnFirst);
        links.Add(slider.get(), &QSlider::valueChanged, this, &Panel::OnSecond);
        links.Add(spin.get(), QOverload<int>::of(&QSpinBox::valueChanged), this, &Panel::OnSpin);
    }

    /// The slots that hear of a change of both controls.
    QStringList Heard()
    {
        heard.clear();
        ++value;
        slider->setValue(value);
        spin->setValue(value);
        return std::exchange(heard, {});
    }

    const std::unique_ptr<QSlider> slider = std::make_unique<QSlider>();
    std::unique_ptr<QSpinBox> spin = std::make_unique<QSpinBox>();
    ControlLinks links;
    QStringList heard;

public slots:
    void OnFirst() { heard << "first"; }
    void OnSecond() { heard << "second"; }
    void OnSpin(int) { heard << "spin"; }
    void OnUnlisted() { heard << "unlisted"; }
    void OnCutting()
    {
        const ControlLinks::Cut quiet(links);
        heard << "cutting";
    }

private:
    int value = 0;
};

const QStringList Nothing;
const QStringList All{"first", "second", "spin"};

} // namespace

class TestControlLinks : public QObject
{
    Q_OBJECT

private slots:
    void LinksAreMadeAsTheyAreAdded();
    void TheSlotsHearNothingWithinACutAndAllAfterIt();
    void OtherConnectionsStayAndAreHeardFirst();
    void NestedCutsEndAtTheOutermostEnd();
    void ManyConnectionsBecomeOne();
    void LinksThatOthersMadeAgainAreCut();
    void ALinkAddedWithinACutIsMadeAtItsEnd();
    void TheSameLinkAddedTwiceIsOne();
    void ASlotThatCutsItsOwnLinkIsHeardNextTime();
    void BrokenLinksStayBrokenAfterACut();
    void LinksMadeWithinACutWaitForItsEnd();
    void MakingTwiceMakesOne();
    void TheSenderMayGo();
    void TheReceiverMayGo();
    void TheReceiverMayGoWithItsList();
    void NothingIsMadeWhereTheListIsGone();
    void ConnectionsOutliveTheList();
};

void TestControlLinks::LinksAreMadeAsTheyAreAdded()
{
    Panel panel;
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::TheSlotsHearNothingWithinACutAndAllAfterIt()
{
    Panel panel;
    {
        const ControlLinks::Cut quiet(panel.links);
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::OtherConnectionsStayAndAreHeardFirst()
{
    Panel panel;
    connect(panel.slider.get(), &QSlider::valueChanged, &panel, &Panel::OnUnlisted);
    QCOMPARE(panel.Heard(), QStringList({"first", "second", "unlisted", "spin"}));
    {
        const ControlLinks::Cut quiet(panel.links);
        QCOMPARE(panel.Heard(), QStringList("unlisted"));
    }
    QCOMPARE(panel.Heard(), QStringList({"unlisted", "first", "second", "spin"}));
}

void TestControlLinks::NestedCutsEndAtTheOutermostEnd()
{
    Panel panel;
    {
        const ControlLinks::Cut outer(panel.links);
        {
            const ControlLinks::Cut inner(panel.links);
            QCOMPARE(panel.Heard(), Nothing);
        }
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::ManyConnectionsBecomeOne()
{
    Panel panel;
    connect(panel.slider.get(), &QSlider::valueChanged, &panel, &Panel::OnFirst);
    QCOMPARE(panel.Heard(), QStringList({"first", "second", "first", "spin"}));
    {
        const ControlLinks::Cut quiet(panel.links);
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::LinksThatOthersMadeAgainAreCut()
{
    Panel panel;
    {
        const ScopedDisconnect quiet(panel.spin.get(), QOverload<int>::of(&QSpinBox::valueChanged), &panel,
                                     &Panel::OnSpin);
        QCOMPARE(panel.Heard(), QStringList({"first", "second"}));
    }
    {
        const ControlLinks::Cut quiet(panel.links);
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::ALinkAddedWithinACutIsMadeAtItsEnd()
{
    Panel panel;
    {
        const ControlLinks::Cut quiet(panel.links);
        panel.links.Add(panel.spin.get(), QOverload<int>::of(&QSpinBox::valueChanged), &panel,
                        &Panel::OnUnlisted);
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All + QStringList("unlisted"));
}

void TestControlLinks::TheSameLinkAddedTwiceIsOne()
{
    Panel panel;
    panel.links.Add(panel.slider.get(), &QSlider::valueChanged, &panel, &Panel::OnFirst);
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::ASlotThatCutsItsOwnLinkIsHeardNextTime()
{
    Panel panel;
    QSlider control;
    panel.links.Add(&control, &QSlider::valueChanged, &panel, &Panel::OnCutting);
    control.setValue(1);
    QCOMPARE(panel.heard, QStringList("cutting"));
    control.setValue(2);
    QCOMPARE(panel.heard, QStringList({"cutting", "cutting"}));
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::BrokenLinksStayBrokenAfterACut()
{
    Panel panel;
    panel.links.Break();
    QCOMPARE(panel.Heard(), Nothing);
    {
        const ControlLinks::Cut quiet(panel.links);
    }
    QCOMPARE(panel.Heard(), Nothing);
    panel.links.Make();
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::LinksMadeWithinACutWaitForItsEnd()
{
    Panel panel;
    {
        const ControlLinks::Cut quiet(panel.links);
        panel.links.Make();
        QCOMPARE(panel.Heard(), Nothing);
    }
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::MakingTwiceMakesOne()
{
    Panel panel;
    panel.links.Make();
    panel.links.Make();
    QCOMPARE(panel.Heard(), All);
}

void TestControlLinks::TheSenderMayGo()
{
    Panel panel;
    {
        const ControlLinks::Cut quiet(panel.links);
        panel.spin.reset();
    }
    panel.slider->setValue(50);
    QCOMPARE(panel.heard, QStringList({"first", "second"}));
}

void TestControlLinks::TheReceiverMayGo()
{
    QSlider slider;
    ControlLinks links;
    auto panel = std::make_unique<Panel>();
    links.Add(&slider, &QSlider::valueChanged, panel.get(), &Panel::OnFirst);
    {
        const ControlLinks::Cut quiet(links);
        panel.reset();
    }
    slider.setValue(50);
    QCOMPARE(slider.value(), 50);
}

void TestControlLinks::TheReceiverMayGoWithItsList()
{
    QSlider slider;
    auto panel = std::make_unique<Panel>();
    panel->links.Add(&slider, &QSlider::valueChanged, panel.get(), &Panel::OnFirst);
    {
        const ControlLinks::Cut quiet(panel->links);
        panel.reset();
    }
    slider.setValue(50);
    QCOMPARE(slider.value(), 50);
}

void TestControlLinks::NothingIsMadeWhereTheListIsGone()
{
    Panel panel;
    QSlider slider;
    auto links = std::make_unique<ControlLinks>();
    links->Add(&slider, &QSlider::valueChanged, &panel, &Panel::OnUnlisted);
    {
        const ControlLinks::Cut quiet(*links);
        links.reset();
    }
    slider.setValue(50);
    QCOMPARE(panel.heard, Nothing);
}

void TestControlLinks::ConnectionsOutliveTheList()
{
    Panel panel;
    QSlider slider;
    {
        ControlLinks links;
        links.Add(&slider, &QSlider::valueChanged, &panel, &Panel::OnUnlisted);
    }
    slider.setValue(50);
    QCOMPARE(panel.heard, QStringList("unlisted"));
}

QTEST_MAIN(TestControlLinks)
#include "tst_ControlLinks.moc"
