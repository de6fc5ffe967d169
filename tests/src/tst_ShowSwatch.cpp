#include "ShowSwatch.h"
#include "TestColors.h"

#include <QPushButton>
#include <QTest>

namespace {

QImage Icon(const QPushButton& button)
{
    return button.icon().pixmap(button.iconSize()).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class TestShowSwatch : public QObject
{
    Q_OBJECT

private slots:
    void FillsTheIconWithTheColour_data();
    void FillsTheIconWithTheColour();
    void TheIconIsOnePixmapOfTheIconSize_data();
    void TheIconIsOnePixmapOfTheIconSize();
    void AnotherColourReplacesIt();
    void IconsOfNoSizeAreNone();
};

void TestShowSwatch::FillsTheIconWithTheColour_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<quint32>("shown");
    QTest::newRow("opaque") << QColor(255, 210, 255) << 0xffffd2ffu;
    QTest::newRow("black") << QColor(Qt::black) << 0xff000000u;
    QTest::newRow("translucent") << QColor(255, 255, 255, 128) << 0x80ffffffu;
    QTest::newRow("invisible") << QColor(Qt::transparent) << 0x00000000u;
    QTest::newRow("another model") << QColor::fromHsv(120, 255, 255) << 0xff00ff00u;
    QTest::newRow("none") << QColor() << 0xff000000u;
    QTest::newRow("no numbers") << TestColors::NoNumbers() << 0x00000000u;
    QTest::newRow("far out") << TestColors::FarOut() << 0xffff00ffu;
    QTest::newRow("no model there is") << TestColors::OfNoModel() << 0x80000000u;
}

void TestShowSwatch::FillsTheIconWithTheColour()
{
    QFETCH(QColor, color);
    QFETCH(quint32, shown);
    QPushButton button;
    button.setIconSize(QSize(32, 12));
    ShowSwatch(&button, color);
    const QImage image = Icon(button);
    QCOMPARE(image.size(), QSize(32, 12));
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            QCOMPARE(image.pixel(x, y), shown);
}

void TestShowSwatch::TheIconIsOnePixmapOfTheIconSize_data()
{
    QTest::addColumn<QSize>("size");
    QTest::newRow("wide") << QSize(32, 12);
    QTest::newRow("square") << QSize(16, 16);
    QTest::newRow("one pixel") << QSize(1, 1);
}

void TestShowSwatch::TheIconIsOnePixmapOfTheIconSize()
{
    QFETCH(QSize, size);
    QPushButton button;
    button.setIconSize(size);
    ShowSwatch(&button, Qt::red);
    QCOMPARE(button.icon().availableSizes(), QList<QSize>{size});
    ShowSwatch(&button, Qt::blue);
    QCOMPARE(button.icon().availableSizes(), QList<QSize>{size});
}

void TestShowSwatch::AnotherColourReplacesIt()
{
    QPushButton button;
    ShowSwatch(&button, Qt::red);
    ShowSwatch(&button, Qt::blue);
    QCOMPARE(Icon(button).pixel(5, 5), QColor(Qt::blue).rgba());
}

void TestShowSwatch::IconsOfNoSizeAreNone()
{
    QPushButton button;
    for (const QSize& size : {QSize(0, 0), QSize(10, 0), QSize(1, 1), QSize(0, 7)}) {
        button.setIconSize(size);
        ShowSwatch(&button, Qt::red);
        QCOMPARE(button.icon().isNull(), size != QSize(1, 1));
    }
}

QTEST_MAIN(TestShowSwatch)
#include "tst_ShowSwatch.moc"
