#pragma once

#include "catalog/SelectionMask.h"
#include "image/KVImage.h"

#include <QObject>
#include <QTimer>

class YDAdjustmentWidget;
struct AdjustmentEntry;

/// The preview of an adjustment whose dialog computes none and whose settings the host draws: a stamp, a
/// text.
///
/// The picture is copied on the thread pool, the drawing is done on the GUI thread, and a burst of changes
/// is drawn once.
class OverlayPreview : public QObject
{
    Q_OBJECT

public:
    OverlayPreview(const AdjustmentEntry& entry, YDAdjustmentWidget& widget, QObject* parent = nullptr);
    ~OverlayPreview() override;

    /// The picture to draw on; draws at once. Nobody may write to its pixels from now on.
    void Start(const RGBA32iImage& picture, const SelectionMask& mask);
    /// Draws 50 ms after the last call.
    void Restart();
    /// Draws a change that is less than 50 ms old at once.
    void Flush();

    /// Whether a newer result than Result() is still to come.
    bool IsBusy() const { return m_isCopying || m_delay.isActive(); }
    /// Empty when the last settings cannot be drawn; Error() then says why, unless memory is short.
    RGBA32iImage Result() const { return m_result; }
    QString Error() const { return m_error; }

signals:
    /// Result() is new, and of the last settings.
    void Ready();

private:
    void Draw();
    void OnCopied(RGBA32iImage copy);

    const AdjustmentEntry& m_entry;
    YDAdjustmentWidget& m_widget;
    RGBA32iImage m_picture;
    SelectionMask m_mask;
    RGBA32iImage m_result;
    QString m_error;
    QTimer m_delay;
    bool m_isCopying = false;
};
