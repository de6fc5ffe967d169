#include "ShowSwatch.h"
#include "TestColors.h"

#include <QPushButton>
#include <QTest>

namespace {

QImage Icon(const QPushButton& button, int ratio)
{
    return button.icon().pixmap(button.iconSize() * ratio).toImage().convertToFormat(QImage::Format_ARGB32);
}

} // namespace

class TestShowSwatch : public QObject
{
    Q_OBJECT

private slots:
    void FillsTheIconWithTheColour_data();
    void FillsTheIconWithTheColour();
    void ALineTellsItFromAButtonOfTheSameColour_data();
    void ALineTellsItFromAButtonOfTheSameColour();
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
}

void TestShowSwatch::FillsTheIconWithTheColour()
{
    QFETCH(QColor, color);
    QFETCH(quint32, shown);
    QPushButton button;
    button.setIconSize(QSize(32, 12));
    ShowSwatch(&button, color);
    for (const int ratio : {1, 2}) { // each in the screen's own pixels
        const QImage image = Icon(button, ratio);
        QCOMPARE(image.size(), QSize(32, 12) * ratio);
        for (int y = ratio; y < image.height() - ratio; ++y)
            for (int x = ratio; x < image.width() - ratio; ++x)
                QCOMPARE(image.pixel(x, y), shown);
    }
}

void TestShowSwatch::ALineTellsItFromAButtonOfTheSameColour_data()
{
    QTest::addColumn<QColor>("color");
    QTest::addColumn<QColor>("text");
    QTest::newRow("white on a light desktop") << QColor(Qt::white) << QColor(Qt::black);
    QTest::newRow("black on a dark desktop") << QColor(Qt::black) << QColor(Qt::white);
    QTest::newRow("invisible") << QColor(Qt::transparent) << QColor(Qt::black);
}

void TestShowSwatch::ALineTellsItFromAButtonOfTheSameColour()
{
    QFETCH(QColor, color);
    QFETCH(QColor, text);
    QPushButton button;
    button.setIconSize(QSize(20, 10));
    QPalette palette;
    palette.setColor(QPalette::ButtonText, text);
    button.setPalette(palette);
    ShowSwatch(&button, color);
    for (const int ratio : {1, 2}) {
        const QImage image = Icon(button, ratio);
        const QRgb line = image.pixel(0, 0);
        const QRgb fill = image.pixel(ratio, ratio);
        QVERIFY(qAbs(qGray(line) - qGray(fill)) > 50 || qAlpha(line) - qAlpha(fill) > 50);
        for (const QPoint& edge : {QPoint(ratio - 1, 5), image.rect().bottomRight(), QPoint(9, ratio - 1),
                                   QPoint(image.width() - ratio, 5)})
            QCOMPARE(image.pixel(edge), line);
    }
}

void TestShowSwatch::AnotherColourReplacesIt()
{
    QPushButton button;
    ShowSwatch(&button, Qt::red);
    ShowSwatch(&button, Qt::blue);
    QCOMPARE(Icon(button, 1).pixel(5, 5), QColor(Qt::blue).rgba());
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
