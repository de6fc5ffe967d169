#include "gui/YDColorWidget.h"

#include <QImage>
#include <QLinearGradient>
#include <QTest>

namespace {

constexpr int Width = 256;
constexpr int Height = 20;

QBrush BlackToWhite(QGradient::CoordinateMode mode, const QPointF& end)
{
    QLinearGradient gradient(QPointF(0, 0), end);
    gradient.setCoordinateMode(mode);
    gradient.setColorAt(0, Qt::black);
    gradient.setColorAt(1, Qt::white);
    return gradient;
}

/// A widget beside the origin of a larger window, as it looks there.
QImage Shown(YDColorWidget& widget, QWidget& window)
{
    window.resize(3 * Width, 4 * Height);
    widget.setParent(&window);
    widget.setGeometry(100, 30, Width, Height);
    window.show();
    return window.grab(widget.geometry()).toImage();
}

int GreyAt(const QImage& image, double x, double y)
{
    return image.pixelColor(int(x * image.width()), int(y * image.height())).green();
}

} // namespace

class TestYDColorWidget : public QObject
{
    Q_OBJECT

private slots:
    void AGradientSpansTheWidget_data();
    void AGradientSpansTheWidget();
    void TheFrameIsOnePixelOfTheScreen();
    void IsDimmedWhenDisabled();
    void LooksTheSameFromRightToLeft();
    void TheBrushIsKeptAndAProperty();
    void WithoutABrushOnlyTheFrameIsThere();
};

void TestYDColorWidget::AGradientSpansTheWidget_data()
{
    QTest::addColumn<QGradient::CoordinateMode>("mode");
    QTest::addColumn<QPointF>("end");
    QTest::newRow("bounding, across") << QGradient::ObjectBoundingMode << QPointF(1, 0);
    QTest::newRow("bounding, down") << QGradient::ObjectBoundingMode << QPointF(0, 1);
    QTest::newRow("device, across") << QGradient::StretchToDeviceMode << QPointF(1, 0);
    QTest::newRow("device, down") << QGradient::StretchToDeviceMode << QPointF(0, 1);
    QTest::newRow("logical, across") << QGradient::LogicalMode << QPointF(Width, 0);
}

void TestYDColorWidget::AGradientSpansTheWidget()
{
    QFETCH(QGradient::CoordinateMode, mode);
    QFETCH(QPointF, end);
    QWidget window;
    auto* const widget = new YDColorWidget;
    widget->SetBackgroundBrush(BlackToWhite(mode, end));
    const QImage image = Shown(*widget, window);
    const bool isAcross = end.x() > 0;
    for (const double share : {0.1, 0.25, 0.5, 0.75, 0.9}) {
        const int grey = GreyAt(image, isAcross ? share : 0.5, isAcross ? 0.5 : share);
        QVERIFY2(std::abs(grey - 255 * share) <= (isAcross ? 3 : 8), qPrintable(QString::number(grey)));
    }
}

void TestYDColorWidget::TheFrameIsOnePixelOfTheScreen()
{
    QWidget window;
    auto* const widget = new YDColorWidget;
    widget->SetBackgroundBrush(Qt::white);
    QPalette palette;
    palette.setColor(QPalette::WindowText, Qt::black);
    widget->setPalette(palette);
    const QImage image = Shown(*widget, window);
    const int middle = image.height() / 2;
    QVERIFY(std::abs(image.pixelColor(0, middle).green() - 128) <= 2);
    QCOMPARE(image.pixelColor(1, middle), QColor(Qt::white));
    QVERIFY(std::abs(image.pixelColor(image.width() - 1, middle).green() - 128) <= 2);
    QCOMPARE(image.pixelColor(image.width() - 2, middle), QColor(Qt::white));
}

void TestYDColorWidget::IsDimmedWhenDisabled()
{
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::white);
    window.setPalette(palette);
    auto* const widget = new YDColorWidget;
    widget->SetBackgroundBrush(Qt::black);
    QCOMPARE(GreyAt(Shown(*widget, window), 0.5, 0.5), 0);
    widget->setEnabled(false);
    QVERIFY(GreyAt(Shown(*widget, window), 0.5, 0.5) > 100);
}

void TestYDColorWidget::LooksTheSameFromRightToLeft()
{
    QWidget window;
    window.setLayoutDirection(Qt::RightToLeft);
    auto* const widget = new YDColorWidget;
    widget->SetBackgroundBrush(BlackToWhite(QGradient::ObjectBoundingMode, QPointF(1, 0)));
    const QImage image = Shown(*widget, window);
    QVERIFY(GreyAt(image, 0.1, 0.5) < 40);
    QVERIFY(GreyAt(image, 0.9, 0.5) > 215);
}

void TestYDColorWidget::TheBrushIsKeptAndAProperty()
{
    YDColorWidget widget;
    const QBrush brush = BlackToWhite(QGradient::ObjectBoundingMode, QPointF(1, 0));
    widget.SetBackgroundBrush(brush);
    QCOMPARE(widget.BackgroundBrush(), brush);
    QVERIFY(widget.setProperty("backgroundBrush", QBrush(Qt::red)));
    QCOMPARE(widget.BackgroundBrush(), QBrush(Qt::red));
}

void TestYDColorWidget::WithoutABrushOnlyTheFrameIsThere()
{
    QWidget window;
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::yellow);
    window.setPalette(palette);
    auto* const widget = new YDColorWidget;
    const QImage image = Shown(*widget, window);
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::yellow));
    QVERIFY(image.pixelColor(0, image.height() / 2) != QColor(Qt::yellow));
}

QTEST_MAIN(TestYDColorWidget)
#include "tst_YDColorWidget.moc"
