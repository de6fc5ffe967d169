#pragma once

#include "catalog/SelectionMask.h"
#include "image/KVImage.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

class YDAdjustmentWidget;
struct AdjustmentEntry;

/// The preview of an adjustment whose dialog computes none and whose settings the host draws: a stamp, a
/// text.
///
/// The settings are read on the GUI thread; the picture is copied and drawn on by the thread pool. A burst of
/// changes is drawn once, and what was drawn of former settings is never shown.
class OverlayPreview : public QObject
{
    Q_OBJECT

public:
    OverlayPreview(const AdjustmentEntry& entry, YDAdjustmentWidget* widget, QObject* parent = nullptr);
    ~OverlayPreview() override;

    /// The picture to draw on; draws at once. Nobody may write to its pixels from now on.
    void Start(const RGBA32iImage& picture, const SelectionMask& mask);
    /// Draws 50 ms after the last call.
    void Restart();
    /// Draws a change that is less than 50 ms old at once.
    void Flush();

    /// Whether a newer result than Result() is still to come.
    bool IsBusy() const { return m_isDrawing || m_delay.isActive(); }
    /// Empty when the last settings cannot be drawn; Error() then says why, unless memory is short.
    RGBA32iImage Result() const { return m_result; }
    QString Error() const { return m_error; }
    /// What the person should know of the last settings: the error, or what they lack; empty for nothing.
    QString Remark() const;

signals:
    /// Result() is new, and of the last settings.
    void Ready();

private:
    struct Drawn
    {
        RGBA32iImage picture;
        QString error;
    };

    void Draw();
    void OnDrawn(const Drawn& drawn);

    const AdjustmentEntry& m_entry;
    const QPointer<YDAdjustmentWidget> m_widget;
    RGBA32iImage m_picture;
    SelectionMask m_mask;
    RGBA32iImage m_result;
    QString m_error;
    QTimer m_delay;
    bool m_isDrawing = false;
    bool m_isStale = false; ///< the settings changed since that drawing began
};
