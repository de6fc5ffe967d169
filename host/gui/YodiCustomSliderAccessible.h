#pragma once

#include <QAccessibleWidget>

#include <vector>

class YodiCustomSlider;

/// What assistive technology sees of a YodiCustomSlider: a group with one slider for each handle.
class YodiCustomSliderAccessible : public QAccessibleWidget
{
public:
    /// Lets Qt find it for every YodiCustomSlider; once is enough, and more does no harm.
    static void InstallFactory();

    explicit YodiCustomSliderAccessible(YodiCustomSlider* slider);
    ~YodiCustomSliderAccessible() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* focusChild() const override;

private:
    YodiCustomSlider* Slider() const;

    mutable std::vector<QAccessible::Id> m_handles; ///< those that somebody has asked for; 0: not yet
};
