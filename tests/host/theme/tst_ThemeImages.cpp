#include "plugincore/KVAdjustmentWidget.h"
#include "theme/ThemeImages.h"
#include "utilities/KVStringHelper.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QTest>

#include <algorithm>
#include <cmath>

namespace {

/// How bright a colour looks, 0..1.
double Luminance(const QColor& color)
{
    const auto linear = [](double c) {
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// 1 for equal colours, 21 for black on white.
double Contrast(const QColor& a, const QColor& b)
{
    const auto [darker, lighter] = std::minmax({Luminance(a), Luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

/// Run on screens with one, one and a half and two device pixels to the unit.
class TestThemeImages : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QDir::setSearchPaths(QStringLiteral("theme"), {}); }

    void AnAdjustmentWidgetInstallsThem();
    void InstallingTwiceIsInstallingOnce();
    void AProgramsOwnImagesComeFirst();
    void EveryImageIsThereInBothSizes_data();
    void EveryImageIsThereInBothSizes();
    void TheTextSettingsStandOutFromAnyButton_data();
    void TheTextSettingsStandOutFromAnyButton();
};

void TestThemeImages::AnAdjustmentWidgetInstallsThem()
{
    QVERIFY(QPixmap(QStringLiteral("theme:picker_black.png")).isNull());
    const KVAdjustmentWidget widget;
    QVERIFY(!QPixmap(QStringLiteral("theme:picker_black.png")).isNull());
}

void TestThemeImages::InstallingTwiceIsInstallingOnce()
{
    ThemeImages::Install();
    ThemeImages::Install();
    QCOMPARE(QDir::searchPaths(QStringLiteral("theme")).size(), 1);
}

void TestThemeImages::AProgramsOwnImagesComeFirst()
{
    QDir::setSearchPaths(QStringLiteral("theme"), {QStringLiteral("/mine")});
    ThemeImages::Install();
    QCOMPARE(QDir::searchPaths(QStringLiteral("theme")).first(), QStringLiteral("/mine"));
    QVERIFY(!QPixmap(QStringLiteral("theme:picker_gray.png")).isNull());
}

void TestThemeImages::EveryImageIsThereInBothSizes_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"picker_black", "picker_gray", "picker_white", "picker_cursor",
                             "deletecurrentpath", "deletecurrentpath_disabled", "text_settings"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestThemeImages::EveryImageIsThereInBothSizes()
{
    QFETCH(QString, name);
    ThemeImages::Install();
    const QString plain = QStringLiteral("theme:%1.png").arg(name);
    QCOMPARE(QImage(plain).size(), QSize(16, 16));
    QCOMPARE(QImage(QStringLiteral("theme:%1@2x.png").arg(name)).size(), QSize(32, 32));
    // A screen between the two takes the finer one.
    const double finest = std::ceil(qGuiApp->devicePixelRatio());
    const QPixmap pixmap(KVStringHelper::DPIAdjustImageName(plain));
    QCOMPARE(pixmap.devicePixelRatio(), finest);
    QCOMPARE(pixmap.size(), QSize(16, 16) * finest);
    QVERIFY(pixmap.hasAlpha());
    QVERIFY(!QIcon(plain).isNull());
}

void TestThemeImages::TheTextSettingsStandOutFromAnyButton_data()
{
    QTest::addColumn<QColor>("button");
    QTest::newRow("light") << QColor(0xf5, 0xf5, 0xf5);
    QTest::newRow("dark") << QColor(0x50, 0x50, 0x50);
}

void TestThemeImages::TheTextSettingsStandOutFromAnyButton()
{
    QFETCH(QColor, button);
    ThemeImages::Install();
    const QImage image(QStringLiteral("theme:text_settings@2x.png"));
    int inkPixels = 0;
    int clearPixels = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor color = image.pixelColor(x, y);
            if (color.alpha() < 255)
                continue;
            ++inkPixels;
            clearPixels += Contrast(color, button) >= 2.2 ? 1 : 0;
        }
    QVERIFY(inkPixels > 100);
    QCOMPARE(clearPixels, inkPixels);
}

int main(int argc, char* argv[])
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    TestThemeImages test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_ThemeImages.moc"
