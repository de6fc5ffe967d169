#pragma once

#include "ControlLinks.h"
#include "YDTaskWidget.h"
#include "adjustmentgui_export.h"
#include "image/KVCompositionMode.h"
#include "operations/Sign.h"

#include <QRect>
#include <QString>
#include <QStringList>

#include <memory>

namespace Ui {
class SignWidget;
}

/// A stamp: the picture of another file that the host puts onto the picture.
///
/// Always a panel, and it computes no pixels: the host draws what GetValue() says. Whether the stamp's file
/// can be read is for whoever draws it to find out.
class ADJUSTMENTGUI_EXPORT YDSignWidget : public YDTaskWidget
{
    Q_OBJECT

public:
    using Params = operations::Sign;

    YDSignWidget(QWidget* parent, Qt::WindowFlags flags);
    ~YDSignWidget() override;

    Params GetValue() const { return m_params; }
    /// Shows `params` without announcing a change.
    void SetValue(const Params& params);

    operations::Task MakeTask() const override;
    QString WhatIsMissing() const override { return operations::WhatIsMissing(m_params); }
    void Reset() override;
    /// Nothing, as the host draws what the panel holds: with the task, or by itself.
    void StartJobWatching(JobWatcher*) override {}
    void ConvertImage(RGBA32iImage&, const RGBA32iImage&, const QPoint&, const QRect&) override {}

    /// Asks for the stamp's file: one name, or none if the user cancelled or no kind of picture can be read.
    QStringList GetOpenFileNames();

public slots:
    void OnSelectFileName();
    void OnHorizontalAlignmentChanged(int index);
    void OnVerticalAlignmentChanged(int index);
    void OnLeftMarginChanged(int margin);
    void OnRightMarginChanged(int margin);
    void OnTopMarginChanged(int margin);
    void OnBottomMarginChanged(int margin);
    void OnOpacityChanged(int opacity);
    void OnBlendingModeChanged(int index);

signals:
    void ValueChanged();

private:
    void Connect();
    [[nodiscard]] ControlLinks::Cut Disconnect() { return ControlLinks::Cut(m_links); }
    void SetHorizontalAlignment(Qt::Alignment alignment);
    void SetVerticalAlignment(Qt::Alignment alignment);
    KVCompositionMode BlendingIndexToMode(int index) const;
    int BlendingModeToIndex(KVCompositionMode mode) const;

    const std::unique_ptr<Ui::SignWidget> m_ui;
    ControlLinks m_links;
    Params m_params;
};
