#include <YDBrightnessContrastWidget.h>
#include <YDTaskWidget.h>
#include <catalog/AdjustmentCatalog.h>
#include <image/KVImage.h>
#include <overlay/DrawText.h>
#include <overlay/OverlayCanvas.h>
#include <overlay/TextOverlay.h>
#include <utilities/AVX2LIB.h>

#include <QApplication>
#include <QDebug>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    YDBrightnessContrastWidget panel(false, nullptr, Qt::WindowFlags());
    YDBrightnessContrastWidget::Params params;
    params.brightness = 20;
    panel.SetValue(params);

    QImage photo(64, 48, QImage::Format_RGB32);
    photo.fill(qRgb(100, 110, 120));
    RGBA32iImage image = ImageFromQImage(photo);
    panel.ConvertImage(image, RGBA32iImage(), QPoint(), QRect());
    const QRgb adjusted = ImageToQImage(image).pixel(63, 47);
    qInfo("adjusted %d %d %d, vector kernels %s", qRed(adjusted), qGreen(adjusted), qBlue(adjusted),
          AVX2LIB::Instance() ? "found" : "missing");

    TextOverlay text;
    text.text = QStringLiteral("consumer");
    const QString problem = DrawText(text, OverlayCanvas(image, RGBA32iImage(), QPoint(), QRect()));
    if (adjusted != qRgb(120, 130, 140) || !problem.isEmpty())
        return 1;

    // Every dialog opens, whichever it is.
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        entry.makeWidget(true, nullptr)->show();
    return 0;
}
