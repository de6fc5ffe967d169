#include "catalog/ApplyThroughDialog.h"

#include "YDAdjustmentWidget.h"

#include <QCoreApplication>
#include <QEventLoop>

QString ApplyThroughDialog(YDAdjustmentWidget& dialog, RGBA32iImage& image, const RGBA32iImage& selection,
                           const QPoint& offset, const QRect& boundingRect)
{
    if (image.IsEmpty())
        return {};
    QEventLoop loop;
    // Queued, because a job that was told to start anew does so only after it has said that it ended.
    QObject::connect(
        &dialog, &YDAdjustmentWidget::ProgressValueChanged, &loop,
        [&dialog, &loop] {
            if (!dialog.IsProcessing())
                loop.quit();
        },
        Qt::QueuedConnection);
    dialog.SetImage(image, selection, offset, boundingRect);
    if (dialog.IsProcessing())
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    if (dialog.IsProcessing())
        return QCoreApplication::translate("ApplyThroughDialog", "It was interrupted.");
    const RGBA32iImage adjusted = dialog.AdjustedImage();
    if (adjusted.IsEmpty())
        return QCoreApplication::translate("ApplyThroughDialog",
                                           "There may be too little memory for this picture.");
    image = adjusted;
    return {};
}
