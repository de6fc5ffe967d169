#include "gui/YodiCustomSliderAccessible.h"

#include "gui/YodiCustomSlider.h"

#include <QPointer>

#include <algorithm>

namespace {

constexpr int KeyStep = 1;

/// One handle.
class HandleAccessible : public QAccessibleInterface, public QAccessibleValueInterface
{
public:
    HandleAccessible(YodiCustomSlider* slider, uint handle) : m_slider(slider), m_handle(handle) {}

    bool isValid() const override { return m_slider && m_handle < m_slider->ControlCount(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_slider); }
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::Slider; }
    void setText(QAccessible::Text, const QString&) override {}

    QString text(QAccessible::Text kind) const override
    {
        if (!isValid())
            return {};
        if (kind == QAccessible::Value)
            return QString::number(m_slider->Value(m_handle));
        return kind == QAccessible::Name ? m_slider->ControlName(m_handle) : QString();
    }

    QRect rect() const override
    {
        if (!isValid())
            return {};
        const QRect own = m_slider->ControlRect(m_handle);
        return {m_slider->mapToGlobal(own.topLeft()), own.size()};
    }

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invalid = !isValid();
        if (!isValid())
            return state;
        state.disabled = !m_slider->isEnabled();
        state.invisible = !m_slider->isVisible();
        state.focusable = m_slider->isEnabled();
        state.focused = m_slider->hasFocus() && m_slider->CurrentControl() == m_handle;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
    }

    QVariant currentValue() const override { return isValid() ? m_slider->Value(m_handle) : 0; }
    void setCurrentValue(const QVariant& value) override
    {
        if (isValid() && m_slider->isEnabled())
            m_slider->ChangeValue(m_handle, value.toInt());
    }
    QVariant minimumValue() const override { return isValid() ? m_slider->LowestValue(m_handle) : 0; }
    QVariant maximumValue() const override { return isValid() ? m_slider->HighestValue(m_handle) : 0; }
    QVariant minimumStepSize() const override { return KeyStep; }

private:
    const QPointer<YodiCustomSlider> m_slider;
    const uint m_handle;
};

QAccessibleInterface* Make(const QString&, QObject* object)
{
    auto* const slider = qobject_cast<YodiCustomSlider*>(object);
    return slider ? new YodiCustomSliderAccessible(slider) : nullptr;
}

} // namespace

void YodiCustomSliderAccessible::InstallFactory()
{
    QAccessible::installFactory(Make); // one that is installed already stays the only one
}

YodiCustomSliderAccessible::YodiCustomSliderAccessible(YodiCustomSlider* slider)
    : QAccessibleWidget(slider, QAccessible::Grouping)
{}

YodiCustomSliderAccessible::~YodiCustomSliderAccessible()
{
    for (const QAccessible::Id id : m_handles)
        if (id != 0)
            QAccessible::deleteAccessibleInterface(id);
}

int YodiCustomSliderAccessible::childCount() const { return int(Slider()->ControlCount()); }

QAccessibleInterface* YodiCustomSliderAccessible::child(int index) const
{
    if (index < 0 || index >= childCount())
        return nullptr;
    m_handles.resize(std::size_t(childCount()), 0);
    QAccessible::Id& id = m_handles[std::size_t(index)];
    if (id == 0)
        id = QAccessible::registerAccessibleInterface(new HandleAccessible(Slider(), uint(index)));
    return QAccessible::accessibleInterface(id);
}

QAccessibleInterface* YodiCustomSliderAccessible::childAt(int x, int y) const
{
    for (int index = 0; index < childCount(); ++index)
        if (child(index)->rect().contains(x, y))
            return child(index);
    return nullptr;
}

int YodiCustomSliderAccessible::indexOfChild(const QAccessibleInterface* child) const
{
    const auto isIt = [child](QAccessible::Id id) {
        return id != 0 && QAccessible::accessibleInterface(id) == child;
    };
    const auto found = std::find_if(m_handles.begin(), m_handles.end(), isIt);
    return found == m_handles.end() ? -1 : int(found - m_handles.begin());
}

QAccessibleInterface* YodiCustomSliderAccessible::focusChild() const
{
    return Slider()->hasFocus() ? child(int(Slider()->CurrentControl())) : nullptr;
}

YodiCustomSlider* YodiCustomSliderAccessible::Slider() const
{
    return static_cast<YodiCustomSlider*>(widget());
}
