#include "PanelKit.h"
#include "TestPictures.h"
#include "YDTaskWidget.h"
#include "catalog/AdjustmentCatalog.h"
#include "catalog/PanelDialog.h"

#include <QCheckBox>
#include <QJsonDocument>
#include <QMetaMethod>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSet>
#include <QTest>
#include <QThreadPool>

#include <vector>

namespace {

using PanelKit::OneChange;
using PanelKit::Operate;
using PanelKit::ShownBy;

QJsonObject Json(const QString& text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (!document.isObject())
        qFatal("No settings: %s", qPrintable(text));
    return document.object();
}

/// A control, what it is set to, the settings that differ from the defaults then, what shows it besides, and
/// what is announced.
struct Control
{
    QString panel;
    const char* name;
    QVariant value;
    QByteArray settings;
    const char* shown;
    QString announced;
};

std::vector<Control> ControlRows()
{
    std::vector<Control> all;
    QString name;
    const auto add = [&](const char* control, const QVariant& value, const QByteArray& settings,
                         const char* shown = "", const QString& announced = OneChange()) {
        all.push_back({name, control, value, settings, shown, announced});
    };

    name = QStringLiteral("brightness-contrast");
    add("m_pBrightnessSlider", 25, R"({"brightness": 25})", "m_pBrightnessSpin=25");
    add("m_pBrightnessSpin", 25, R"({"brightness": 25})", "m_pBrightnessSlider=25");
    add("m_pContrastSlider", -25, R"({"contrast": -25})", "m_pContrastSpin=-25");
    add("m_pContrastSpin", -25, R"({"contrast": -25})", "m_pContrastSlider=-25");

    name = QStringLiteral("exposure");
    const QString exposure = QStringLiteral("host exposure data");
    const QString offset = QStringLiteral("host offset data");
    add("m_pExposureSlider", 12345, R"({"exposure": 1.2345})", "m_pExposureSpin=1.2345", exposure);
    add("m_pExposureSlider", -12345, R"({"exposure": -1.2345})", "m_pExposureSpin=-1.2345", exposure);
    add("m_pExposureSpin", 2.5, R"({"exposure": 2.5})", "m_pExposureSlider=25000", exposure);
    add("m_pOffsetSlider", 1234, R"({"offset": 0.1234})", "m_pOffsetSpin=0.1234", offset);
    add("m_pOffsetSlider", -5000, R"({"offset": -0.5})", "m_pOffsetSpin=-0.5", offset);
    add("m_pOffsetSpin", 0.1, R"({"offset": 0.1})", "m_pOffsetSlider=1000", offset);

    name = QStringLiteral("gamma");
    add("m_pGammaSlider", 230, R"({"gamma": 2.3})", "m_pGammaSpin=2.3", "host gamma data");
    add("m_pGammaSpin", 2.4, R"({"gamma": 2.4})", "m_pGammaSlider=240", "host gamma data");

    name = QStringLiteral("posterize");
    add("m_pPosterizeSlider", 40, R"({"levels": 40})", "m_pPosterizeSpin=40", "host posterize data");
    add("m_pPosterizeSpin", 50, R"({"levels": 50})", "m_pPosterizeSlider=50", "host posterize data");

    name = QStringLiteral("levels");
    const QString channelInView = QStringLiteral("host value");
    add("m_pChannel", 3, R"({"channel": 3})", "", channelInView);
    add("m_pInputSlider", 20, R"({"input": [[20, 255], [0, 255], [0, 255], [0, 255]]})", "m_pLowInput=20");
    add("m_pLowInput", 20, R"({"input": [[20, 255], [0, 255], [0, 255], [0, 255]]})",
        "m_pInputSlider=20/137/255");
    add("m_pMiddleInput", 2.1, R"({"gamma": [2.1, 1, 1, 1]})", "m_pInputSlider=0/112/255");
    add("m_pHighInput", 200, R"({"input": [[0, 200], [0, 255], [0, 255], [0, 255]]})",
        "m_pInputSlider=0/100/200");
    add("m_pOutputSlider", 30, R"({"output": [[30, 255], [0, 255], [0, 255], [0, 255]]})", "m_pLowOutput=30");
    add("m_pLowOutput", 30, R"({"output": [[30, 255], [0, 255], [0, 255], [0, 255]]})",
        "m_pOutputSlider=30/255");
    add("m_pHighOutput", 40, R"({"output": [[0, 40], [0, 255], [0, 255], [0, 255]]})",
        "m_pOutputSlider=0/40");

    name = QStringLiteral("curves");
    add("m_pChannel", 3, R"({"channel": 3})", "", "currentnode host value");
    add("m_pInputSlider", 30,
        R"({"curves": [[[30, 0], [255, 255]], [[0, 0], [255, 255]], [[0, 0], [255, 255]], [[0, 0], [255, 255]]]})",
        "m_pInputSpin=30;m_pOutputSpin=0", "host value data currentnode");

    name = QStringLiteral("threshold");
    add("m_pThresholdLevel", 77, R"({"level": 77})", "m_pSlider=77");
    add("m_pThresholdLevel", 1, R"({"level": 1})", "m_pSlider=1");
    add("m_pThresholdLevel", 255, R"({"level": 255})", "m_pSlider=255");
    add("m_pSlider", 77, R"({"level": 77})", "m_pThresholdLevel=77");
    add("m_pSlider", 255, R"({"level": 255})", "m_pThresholdLevel=255");

    name = QStringLiteral("hue-saturation");
    add("m_pHueSlider", 200, R"({"hue": 200})", "m_pHueSpin=200");
    add("m_pHueSpin", 100, R"({"hue": 100})", "m_pHueSlider=100");
    add("m_pSaturationSlider", -30, R"({"saturation": -30})", "m_pSaturationSpin=-30");
    add("m_pSaturationSpin", 30, R"({"saturation": 30})", "m_pSaturationSlider=30");
    add("m_pLightnessSlider", -40, R"({"lightness": -40})", "m_pLightnessSpin=-40");
    add("m_pLightnessSpin", 40, R"({"lightness": 40})", "m_pLightnessSlider=40");
    add("m_pColorizeCheckBox", true, R"({"colorize": true})");

    name = QStringLiteral("color-balance");
    add("m_pCRSlider", 40, R"({"cyanRed": [0, 40, 0]})", "m_pCRSpin=40");
    add("m_pCRSpin", -40, R"({"cyanRed": [0, -40, 0]})", "m_pCRSlider=-40");
    add("m_pMGSlider", 40, R"({"magentaGreen": [0, 40, 0]})", "m_pMGSpin=40");
    add("m_pMGSpin", -40, R"({"magentaGreen": [0, -40, 0]})", "m_pMGSlider=-40");
    add("m_pYBSlider", 40, R"({"yellowBlue": [0, 40, 0]})", "m_pYBSpin=40");
    add("m_pYBSpin", -40, R"({"yellowBlue": [0, -40, 0]})", "m_pYBSlider=-40");
    add("m_pShadows", true, R"({"toneRange": 1})", "m_pMidtones=off", channelInView);
    add("m_pHighlights", true, R"({"toneRange": 3})", "m_pMidtones=off", channelInView);
    add("m_pLuminosity", false, R"({"preserveLuminosity": false})");

    name = QStringLiteral("black-and-white");
    add("m_pLuminance", true, R"({"type": 1})", "m_pAverage=off;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072");
    add("m_pD65", true, R"({"type": 2})", "m_pAverage=off;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072");
    add("m_pNTSC", true, R"({"type": 3})", "m_pAverage=off;m_pRed=0.3;m_pGreen=0.59;m_pBlue=0.11");
    add("m_pCIE", true, R"({"type": 4})", "m_pAverage=off;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072");
    add("m_pCustom", true, R"({"type": 5})", "m_pAverage=off;m_pRed=0.333;m_pGreen=0.333;m_pBlue=0.333");

    name = QStringLiteral("colorize");
    add("horizontalSlider", 60, R"({"amount": 60})", "m_pAmount=60");
    add("m_pAmount", 60, R"({"amount": 60})", "horizontalSlider=60");

    name = QStringLiteral("photo-filter");
    add("horizontalSlider", 60, R"({"density": 60})", "m_pDensity=60");
    add("m_pDensity", 60, R"({"density": 60})", "horizontalSlider=60");
    add("m_pPresetList", 5, R"({"color": "#005dff"})", "m_pColor=#005dff");

    name = QStringLiteral("tint");
    add("horizontalSlider", 60, R"({"amount": 60})", "m_pAmount=60");
    add("m_pAmount", 60, R"({"amount": 60})", "horizontalSlider=60");
    add("m_pType", 3, R"({"type": 3})");

    name = QStringLiteral("temperature");
    add("ColorTemperatureSlider", 4000, R"({"temperature": 4000})", "m_pTemperature=4000");
    add("m_pTemperature", 9000, R"({"temperature": 9000})", "ColorTemperatureSlider=9000");
    add("m_pStrengthSldr", 70, R"({"strength": 70})", "m_pStrength=70");
    add("m_pStrength", 60, R"({"strength": 60})", "m_pStrengthSldr=60");
    add("TintSlider", -30, R"({"tint": -30})", "m_pTint=-30");
    add("m_pTint", 60, R"({"tint": 60})", "TintSlider=60");

    name = QStringLiteral("white-balance");
    add("m_pWBStrength", 31, R"({"autoStrength": 31})", "spinBox=31");
    add("spinBox", 31, R"({"autoStrength": 31})", "m_pWBStrength=31");
    add("m_pOverexposure", true, R"({"mode": 1})", "m_pWBStrength=100;m_pAuto=off");
    add("m_pUnderexposure", true, R"({"mode": 2})", "m_pWBStrength=100;m_pAuto=off");
    add("m_pEnchanced", true, R"({"enhanced": true})");
    add("m_pTemperatureContent", true, R"({"useTemperature": true})");
    add("TemperatureSlider", -40, R"({"temperature": -40})", "m_pTemperature=-40");
    add("m_pTemperature", -40, R"({"temperature": -40})", "TemperatureSlider=-40");
    add("slider_2", 21, R"({"temperatureStrength": 21})", "m_pTempStrength=21");
    add("m_pTempStrength", 21, R"({"temperatureStrength": 21})", "slider_2=21");

    name = QStringLiteral("color-enhancer");
    add("horizontalSlider", 70, R"({"amount": 70})", "m_pAmount=70");
    add("m_pAmount", 70, R"({"amount": 70})", "horizontalSlider=70");
    add("horizontalSlider_2", 20, R"({"affected": 20})", "m_pAffected=20");
    add("m_pAffected", 20, R"({"affected": 20})", "horizontalSlider_2=20");

    name = QStringLiteral("replace-color");
    add("m_pSourceTolerance", 60, R"({"tolerance": 60})", "spinBox=60");
    add("spinBox", 255, R"({"tolerance": 255})", "m_pSourceTolerance=255");
    add("m_pPositionType", 1, R"({"position": 1})", "m_pPositionType=Right top");
    add("m_pPositionType", 3, R"({"position": 3})", "m_pPositionType=Right bottom");
    add("m_pDestinationOpacity", 0, R"({"opacity": 0})", "spinBox_2=0");
    add("spinBox_2", 42, R"({"opacity": 42})", "m_pDestinationOpacity=42");

    name = QStringLiteral("fill-color");
    add("horizontalSlider", 60, R"({"opacity": 60})", "m_pOpacity=60");
    add("m_pOpacity", 60, R"({"opacity": 60})", "horizontalSlider=60");

    name = QStringLiteral("selective-colors");
    const QString percentage = QStringLiteral("host data value"); // in an order of its own
    const auto reds = [](const char* inks) {
        return R"({"targets": [)" + QByteArray(inks) + QByteArray(", [0, 0, 0, 0]").repeated(8) + "]}";
    };
    add("m_pColors", 4, "{}", "m_pCyan=0;m_pBlackSlider=0", QString());
    add("m_pCyan", 40, reds("[40, 0, 0, 0]"), "m_pCyanSlider=40", percentage);
    add("m_pCyanSlider", -60, reds("[-60, 0, 0, 0]"), "m_pCyan=-60", percentage);
    add("m_pMagenta", 41, reds("[0, 41, 0, 0]"), "m_pMagentaSlider=41", percentage);
    add("m_pMagentaSlider", -61, reds("[0, -61, 0, 0]"), "m_pMagenta=-61", percentage);
    add("m_pYellow", 42, reds("[0, 0, 42, 0]"), "m_pYellowSlider=42", percentage);
    add("m_pYellowSlider", -62, reds("[0, 0, -62, 0]"), "m_pYellow=-62", percentage);
    add("m_pBlack", 43, reds("[0, 0, 0, 43]"), "m_pBlackSlider=43", percentage);
    add("m_pBlackSlider", -63, reds("[0, 0, 0, -63]"), "m_pBlack=-63", percentage);
    add("m_pAbsolute", true, R"({"mode": 1})", "m_pRelative=off");

    name = QStringLiteral("sign");
    add("m_pHrzAlignment", 1, R"({"alignment": 36})");
    add("m_pVrtAlignment", 1, R"({"alignment": 129})");
    add("m_pLeftMargin", 7, R"({"margins": [7, 5, 5, 5]})");
    add("m_pTopMargin", 7, R"({"margins": [5, 7, 5, 5]})");
    add("m_pRightMargin", 7, R"({"margins": [5, 5, 7, 5]})");
    add("m_pBottomMargin", 7, R"({"margins": [5, 5, 5, 7]})");
    add("m_pOpacitySpn", 30, R"({"opacity": 30})", "m_pOpacitySlider=30");
    add("m_pOpacitySlider", 30, R"({"opacity": 30})", "m_pOpacitySpn=30");
    add("m_pBlendCombo", 3, R"({"blendingMode": 15})", "m_pBlendCombo=Overlay");

    name = QStringLiteral("watermark");
    add("m_pText", QStringLiteral("abc"), R"({"text": "abc"})");
    add("m_pAngleSpn", 33, R"({"angle": 33})", "m_pAngleSldr=33");
    add("m_pAngleSldr", -33, R"({"angle": -33})", "m_pAngleSpn=-33");
    add("m_pLeftMargin", 7, R"({"margins": [7, 5, 5, 5]})");
    add("m_pTopMargin", 7, R"({"margins": [5, 7, 5, 5]})");
    add("m_pRightMargin", 7, R"({"margins": [5, 5, 7, 5]})");
    add("m_pBottomMargin", 7, R"({"margins": [5, 5, 5, 7]})");
    add("m_pBlendCombo", 12, R"({"blendingMode": 12})", "m_pBlendCombo=Addition");
    add("m_pOpacitySpn", 30, R"({"opacity": 30})", "m_pOpacitySlider=30");
    add("m_pOpacitySlider", 31, R"({"opacity": 31})", "m_pOpacitySpn=31");
    add("m_pHrzTiles", 5, R"({"hrzTiles": 5})");
    add("m_pVrtTiles", 5, R"({"vrtTiles": 5})");
    return all;
}

} // namespace

/// Every signal of a panel of whatever class, in order: "host" and "data" for those that all have, and its
/// own by their names without "Changed".
class SignalOrder : public QObject
{
    Q_OBJECT

public:
    explicit SignalOrder(const YDTaskWidget& panel)
    {
        const QMetaMethod note = metaObject()->method(metaObject()->indexOfSlot("Note()"));
        connect(&panel, QMetaMethod::fromSignal(&KVAdjustmentWidget::UserParamsChanged), this, note);
        connect(&panel, QMetaMethod::fromSignal(&YDAdjustmentWidget::DataChanged), this, note);
        const QMetaObject& meta = *panel.metaObject();
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
            if (meta.method(i).methodType() == QMetaMethod::Signal && meta.method(i).parameterCount() == 0)
                connect(&panel, meta.method(i), this, note);
    }

    QString Take()
    {
        const QString all = m_order.join(QLatin1Char(' '));
        m_order.clear();
        return all;
    }

private slots:
    void Note()
    {
        QString name = QString::fromLatin1(sender()->metaObject()->method(senderSignalIndex()).name());
        name.chop(int(qstrlen("Changed")));
        m_order.append(name == QLatin1String("UserParams") ? QStringLiteral("host") : name.toLower());
    }

private:
    QStringList m_order;
};

/// What holds for the panel of every adjustment, one row an adjustment or a control.
class TestAdjustmentContracts : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { QThreadPool::globalInstance()->waitForDone(); }

    void AControlStoresItsValueAndAnnouncesIt_data() { Controls(); }
    void AControlStoresItsValueAndAnnouncesIt();
    void AControlIsHeardOnceHoweverOftenSettingsWereShown_data() { Controls(); }
    void AControlIsHeardOnceHoweverOftenSettingsWereShown();
    void EveryControlHasARow_data() { Adjustments(); }
    void EveryControlHasARow();
    void SettingsAreShownInTheControls_data() { Samples(); }
    void SettingsAreShownInTheControls();
    void ShowingSettingsAnnouncesNothing_data() { Samples(); }
    void ShowingSettingsAnnouncesNothing();
    void ShowingSettingsStartsNoPreview_data() { Samples(); }
    void ShowingSettingsStartsNoPreview();
    void ResettingGivesTheDefaultsAndAnnouncesThem_data() { Samples(); }
    void ResettingGivesTheDefaultsAndAnnouncesThem();
    void ResettingStartsAPreviewOfTheDefaults_data() { Samples(); }
    void ResettingStartsAPreviewOfTheDefaults();
    void MayBeDestroyedInTheMiddle_data();
    void MayBeDestroyedInTheMiddle();
    void NumbersFromOutsideAreKeptAndHarmless_data();
    void NumbersFromOutsideAreKeptAndHarmless();

private:
    static void Adjustments();
    static void Controls();
    static void Samples();
    static const AdjustmentEntry& Entry()
    {
        QFETCH(QString, name);
        return *AdjustmentCatalog::Find(name);
    }
    static std::unique_ptr<operations::Settings> With(const QString& json)
    {
        auto settings = Entry().makeSettings();
        const QString problem = settings->FromJson(Json(json));
        if (!problem.isEmpty())
            qFatal("%s", qPrintable(problem));
        return settings;
    }
    /// Whether all of "control=what it shows" is so; several are separated by semicolons.
    static void CompareShown(const QWidget& panel, const QString& shown);
};

void TestAdjustmentContracts::Adjustments()
{
    QTest::addColumn<QString>("name");
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries())
        QTest::newRow(qPrintable(entry.name)) << entry.name;
}

void TestAdjustmentContracts::Controls()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("control");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("announced");
    for (const Control& each : ControlRows())
        QTest::addRow("%s: %s to %s", qPrintable(each.panel), each.name, qPrintable(each.value.toString()))
            << each.panel << QString::fromLatin1(each.name) << each.value
            << QString::fromLatin1(each.settings) << QString::fromLatin1(each.shown) << each.announced;
}

/// Settings of each adjustment in which every field has a value of its own, how the controls show them, and
/// what is announced when they are shown and when they are reset, once and again.
void TestAdjustmentContracts::Samples()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("settings");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("byShowing");
    QTest::addColumn<QString>("byReset");
    QTest::addColumn<QString>("byAnotherReset");
    struct Announced
    {
        QString byShowing;
        QString byReset = OneChange();
        QString byAnotherReset = OneChange();
    };
    const auto add = [](const char* name, const QByteArray& settings, const char* shown,
                        const Announced& announced = {}) {
        QTest::addRow("%s %s", name, qPrintable(QString::fromLatin1(settings).simplified()))
            << QString::fromLatin1(name) << QString::fromLatin1(settings) << QString::fromLatin1(shown)
            << announced.byShowing << announced.byReset << announced.byAnotherReset;
    };
    // Some say only what their controls really change.
    add("brightness-contrast", R"({"brightness": 30, "contrast": -40})",
        "m_pBrightnessSpin=30;m_pBrightnessSlider=30;m_pContrastSpin=-40;m_pContrastSlider=-40",
        {{}, PanelKit::Changes(2), {}});
    // The exposure's spin box is connected once more before it is set, and again after that.
    add("exposure", R"({"exposure": 1.5, "offset": 0.25})",
        "m_pExposureSpin=1.5;m_pExposureSlider=15000;m_pOffsetSpin=0.25;m_pOffsetSlider=2500",
        {"host exposure data host exposure data",
         "host exposure data host exposure data host exposure data host offset data",
         {}});
    add("gamma", R"({"gamma": 2.5})", "m_pGammaSpin=2.5;m_pGammaSlider=250", {{}, "host gamma data", {}});
    add("posterize", R"({"levels": 12})", "m_pPosterizeSpin=12;m_pPosterizeSlider=12",
        {{}, "host posterize data", {}});
    add("levels",
        R"({"channel": 2, "input": [[1, 250], [2, 240], [3, 230], [4, 220]], "gamma": [1.5, 0.5, 2, 9.99],
            "output": [[5, 210], [6, 200], [190, 7], [8, 180]]})",
        "m_pChannel=Green;m_pLowInput=3;m_pMiddleInput=2;m_pHighInput=230;m_pLowOutput=190;m_pHighOutput=7;"
        "m_pInputSlider=3/104/230;m_pOutputSlider=190/7"); // 116 + (3 - 116) * 1000 / 8990 = 104
    add("curves",
        R"({"channel": 1, "curves": [[[5, 0], [250, 255]], [[60, 1], [70, 2], [80, 3]],
            [[1, 0], [255, 255]], [[0, 9], [255, 255]]]})",
        "m_pChannel=Red;m_pInputSpin=60;m_pOutputSpin=1;m_pInputSlider=60/80",
        {"currentnode", "currentnode host value data", "currentnode host value data"});
    add("threshold", R"({"level": 30})", "m_pThresholdLevel=30;m_pSlider=30");
    add("hue-saturation", R"({"hue": 300, "saturation": -40, "lightness": 20, "colorize": true})",
        "m_pHueSpin=300;m_pHueSlider=300;m_pSaturationSpin=-40;m_pSaturationSlider=-40;m_pLightnessSpin=20;"
        "m_pLightnessSlider=20;m_pColorizeCheckBox=on",
        {{}, PanelKit::Changes(4), {}});
    add("color-balance",
        R"({"preserveLuminosity": false, "toneRange": 3, "cyanRed": [11, 12, 13],
            "magentaGreen": [-21, -22, -23], "yellowBlue": [31, 32, 33]})",
        "m_pShadows=off;m_pMidtones=off;m_pHighlights=on;m_pLuminosity=off;m_pCRSpin=13;m_pCRSlider=13;"
        "m_pMGSpin=-23;m_pMGSlider=-23;m_pYBSpin=33;m_pYBSlider=33");
    add("color-balance", R"({"toneRange": 1, "cyanRed": [11, 12, 13], "yellowBlue": [31, 32, 33]})",
        "m_pShadows=on;m_pMidtones=off;m_pHighlights=off;m_pCRSpin=11;m_pMGSpin=0;m_pYBSlider=31");
    add("color-balance", R"({"toneRange": 2, "cyanRed": [11, 12, 13], "yellowBlue": [31, 32, 33]})",
        "m_pShadows=off;m_pMidtones=on;m_pHighlights=off;m_pCRSpin=12;m_pMGSpin=0;m_pYBSlider=32");
    add("color-balance", R"({"toneRange": 0, "cyanRed": [11, 12, 13], "yellowBlue": [31, 32, 33]})",
        "m_pShadows=off;m_pMidtones=off;m_pHighlights=off;m_pCRSpin=0;m_pMGSpin=0;m_pYBSlider=0");
    const char* const sets[] = {"m_pLuminance=on;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072",
                                "m_pD65=on;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072",
                                "m_pNTSC=on;m_pRed=0.3;m_pGreen=0.59;m_pBlue=0.11",
                                "m_pCIE=on;m_pRed=0.213;m_pGreen=0.715;m_pBlue=0.072"};
    for (int type = 1; type <= 4; ++type)
        add("black-and-white", QByteArray(R"({"r": 0.5, "type": )").append(char('0' + type)) + "}",
            sets[type - 1]);
    add("black-and-white", R"({"type": 5, "r": 0.12345})", "m_pRed=0.123;m_pGreen=0.333;m_pBlue=0.333");
    add("black-and-white", R"({"type": 5, "r": 0.5, "g": 0.25, "b": 1})",
        "m_pAverage=off;m_pCustom=on;m_pRed=0.5;m_pGreen=0.25;m_pBlue=1");
    add("colorize", R"({"color": "#0a14c8", "amount": 70})",
        "m_pColor=#0a14c8;m_pAmount=70;horizontalSlider=70");
    add("photo-filter", R"({"color": "#ff0000", "density": 70})",
        "m_pColor=#ff0000;m_pDensity=70;horizontalSlider=70;m_pPresetList=Deep Red");
    // Its controls stay connected while they are set.
    add("tint", R"({"blackTone": "#c80a14", "whiteTone": "#0a14c8", "amount": 40, "type": 2})",
        "m_pBlackTone=#c80a14;m_pWhiteTone=#0a14c8;m_pAmount=40;horizontalSlider=40;m_pType=LUMA",
        {PanelKit::Changes(2), PanelKit::Changes(3), PanelKit::Changes(1)});
    // The control of the strength is left as it is, and so says nothing when it is reset.
    add("temperature", R"({"temperature": 3000, "tint": -20, "strength": 80})",
        "m_pTemperature=3000;ColorTemperatureSlider=3000;m_pTint=-20;TintSlider=-20;m_pStrength=50;"
        "m_pStrengthSldr=50",
        {{}, PanelKit::Changes(2), {}});
    add("white-balance",
        R"({"enhanced": true, "autoStrength": 30, "overexposureStrength": 60, "underexposureStrength": 90,
            "mode": 2, "useTemperature": true, "temperature": -70, "temperatureStrength": 20})",
        "m_pAuto=off;m_pOverexposure=off;m_pUnderexposure=on;m_pEnchanced=on;m_pWBStrength=90;spinBox=90;"
        "m_pTemperatureContent=on;TemperatureSlider=-70;m_pTemperature=-70;slider_2=20;m_pTempStrength=20");
    add("white-balance", R"({"mode": 1, "autoStrength": 30, "overexposureStrength": 60})",
        "m_pAuto=off;m_pOverexposure=on;m_pUnderexposure=off;m_pWBStrength=60;spinBox=60");
    add("white-balance", R"({"mode": 0, "autoStrength": 30, "overexposureStrength": 60})",
        "m_pAuto=on;m_pOverexposure=off;m_pUnderexposure=off;m_pWBStrength=30;spinBox=30");
    add("color-enhancer", R"({"affected": 60, "amount": 30})",
        "m_pAmount=30;horizontalSlider=30;m_pAffected=60;horizontalSlider_2=60");
    add("replace-color", R"({"tolerance": 30, "position": 2, "color": "#0a14c8", "opacity": 70})",
        "m_pSourceTolerance=30;spinBox=30;m_pPositionType=Left bottom;m_pDestinationOpacity=70;spinBox_2=70;"
        "m_pSelectDestinationColor=#0a14c8");
    add("fill-color", R"({"color": "#0a14c8", "opacity": 70})",
        "m_pColor=#0a14c8;m_pOpacity=70;horizontalSlider=70");
    add("selective-colors",
        R"({"targets": [[1, -2, 3, -4], [11, -12, 8, -9], [21, -22, 13, -14], [31, -32, 18, -19],
            [41, -42, 23, -24], [51, -52, 28, -29], [61, -62, 33, -34], [71, -72, 38, -39],
            [81, -82, 43, -44]], "mode": 1})",
        "m_pColors=Reds;m_pCyan=1;m_pMagenta=-2;m_pYellow=3;m_pBlack=-4;m_pCyanSlider=1;m_pMagentaSlider=-2;"
        "m_pYellowSlider=3;m_pBlackSlider=-4;m_pRelative=off;m_pAbsolute=on");
    add("sign",
        R"({"alignment": 66, "margins": [1, 22, 333, 999], "fileName": "/stamps/seal.png",
            "blendingMode": 13, "opacity": 40})",
        "m_pImageFileName=/stamps/seal.png;m_pHrzAlignment=Right;m_pVrtAlignment=Bottom;m_pLeftMargin=1;"
        "m_pTopMargin=22;m_pRightMargin=333;m_pBottomMargin=999;m_pBlendCombo=Multiply;m_pOpacitySpn=40;"
        "m_pOpacitySlider=40");
    add("watermark",
        R"({"angle": -35, "margins": [1, 22, 333, 999], "text": "me", "font": "No Such Family,40",
            "color": "#0a141e", "blendingMode": 22, "opacity": 40, "hrzTiles": 3, "vrtTiles": 4})",
        "m_pText=me;m_pAngleSpn=-35;m_pAngleSldr=-35;m_pLeftMargin=1;m_pTopMargin=22;m_pRightMargin=333;"
        "m_pBottomMargin=999;m_pColor=#0a141e;m_pBlendCombo=Difference;m_pOpacitySpn=40;m_pOpacitySlider=40;"
        "m_pHrzTiles=3;m_pVrtTiles=4");
}

void TestAdjustmentContracts::CompareShown(const QWidget& panel, const QString& shown)
{
    const auto all = shown.splitRef(QLatin1Char(';'), Qt::SkipEmptyParts);
    for (const QStringRef& each : all) {
        const auto nameAndText = each.split(QLatin1Char('='));
        QCOMPARE(nameAndText.size(), 2);
        const auto* const control = PanelKit::Child<QWidget>(panel, nameAndText[0].toLatin1());
        QCOMPARE(nameAndText[0] + QLatin1Char('=') + ShownBy(*control), each.toString());
    }
}

void TestAdjustmentContracts::AControlStoresItsValueAndAnnouncesIt()
{
    QFETCH(QString, control);
    QFETCH(QVariant, value);
    QFETCH(QString, settings);
    QFETCH(QString, shown);
    QFETCH(QString, announced);
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        SignalOrder order(PanelDialog::PanelOf(*widget));
        auto* const child = PanelKit::Child<QWidget>(*widget, qPrintable(control));
        Operate(*child, value);
        QCOMPARE(order.Take(), announced);
        QCOMPARE(Entry().SettingsOf(*widget)->ToJson(), With(settings)->ToJson());
        CompareShown(*widget, shown);
        Operate(*child, value); // is no change
        QCOMPARE(order.Take(), QString());
    }
}

void TestAdjustmentContracts::AControlIsHeardOnceHoweverOftenSettingsWereShown()
{
    QFETCH(QString, control);
    QFETCH(QVariant, value);
    QFETCH(QString, announced);
    const auto widget = Entry().makeWidget(false, nullptr);
    for (int times = 0; times < 3; ++times)
        Entry().show(*widget, *Entry().makeSettings());
    SignalOrder order(*widget);
    Operate(*PanelKit::Child<QWidget>(*widget, qPrintable(control)), value);
    // The exposure is connected twice more each time.
    QCOMPARE(order.Take(), control.startsWith(QLatin1String("m_pExposure"))
                               ? (announced + QLatin1Char(' ')).repeated(7).trimmed()
                               : announced);
}

/// But for what cannot be operated yet, and for the button of what is chosen already.
void TestAdjustmentContracts::EveryControlHasARow()
{
    QSet<QString> rows;
    for (const Control& each : ControlRows())
        if (each.panel == Entry().name)
            rows.insert(QString::fromLatin1(each.name));
    const auto panel = Entry().makeWidget(false, nullptr);
    const auto children = panel->findChildren<QWidget*>();
    for (const QWidget* const child : children) {
        const auto* const radio = qobject_cast<const QRadioButton*>(child);
        const bool isControl =
            qobject_cast<const QAbstractSlider*>(child) || qobject_cast<const QAbstractSpinBox*>(child) ||
            qobject_cast<const YodiCustomSlider*>(child) || qobject_cast<const QComboBox*>(child) ||
            qobject_cast<const QCheckBox*>(child) || (radio && !radio->isChecked());
        if (isControl && child->isEnabled() && child->focusPolicy() != Qt::NoFocus)
            QVERIFY2(rows.contains(child->objectName()), qPrintable(child->objectName()));
    }
    QVERIFY(!rows.isEmpty());
}

void TestAdjustmentContracts::SettingsAreShownInTheControls()
{
    QFETCH(QString, settings);
    QFETCH(QString, shown);
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        Entry().show(*widget, *With(settings));
        CompareShown(*widget, shown);
        QCOMPARE(Entry().SettingsOf(*widget)->ToJson(), With(settings)->ToJson());
        QVERIFY(With(settings)->ToJson() != Entry().makeSettings()->ToJson());
    }
}

/// Two keep their controls connected, and say what these change.
void TestAdjustmentContracts::ShowingSettingsAnnouncesNothing()
{
    QFETCH(QString, settings);
    QFETCH(QString, byShowing);
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        SignalOrder order(PanelDialog::PanelOf(*widget));
        Entry().show(*widget, *With(settings));
        QCOMPARE(order.Take(), byShowing);
    }
}

void TestAdjustmentContracts::ShowingSettingsStartsNoPreview()
{
    QFETCH(QString, settings);
    QFETCH(QString, byShowing);
    const auto dialog = Entry().makeWidget(true, nullptr);
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    dialog->SetImage(TestPictures::Noise(50, 40), {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PanelKit::PatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!dialog->IsProcessing(), PanelKit::PatienceMs);
    Entry().show(*dialog, *With(settings));
    dialog->FlushPendingChange(); // would start what waits for more changes
    QCOMPARE(dialog->IsProcessing(), byShowing.contains(QLatin1String("data")));
}

void TestAdjustmentContracts::ResettingGivesTheDefaultsAndAnnouncesThem()
{
    QFETCH(QString, settings);
    QFETCH(QString, byReset);
    QFETCH(QString, byAnotherReset);
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        QStringList controls;
        const auto shown = [&widget] {
            QStringList all;
            const auto children = widget->findChildren<QWidget*>(QRegularExpression(QStringLiteral("^[^q]")));
            for (const QWidget* const child : children)
                all.append(child->objectName() + QLatin1Char('=') + ShownBy(*child) +
                           QLatin1String(child->isEnabled() ? "" : " disabled"));
            return all;
        };
        const QStringList opened = shown();
        Entry().show(*widget, *With(settings));
        SignalOrder order(PanelDialog::PanelOf(*widget));
        widget->Reset();
        QCOMPARE(order.Take(), byReset);
        QCOMPARE(Entry().SettingsOf(*widget)->ToJson(), Entry().makeSettings()->ToJson());
        QCOMPARE(shown(), opened);
        widget->Reset(); // what is reset already
        QCOMPARE(order.Take(), byAnotherReset);
        QCOMPARE(shown(), opened);
    }
}

void TestAdjustmentContracts::ResettingStartsAPreviewOfTheDefaults()
{
    QFETCH(QString, settings);
    QFETCH(QString, byAnotherReset);
    const RGBA32iImage source = TestPictures::Random(70, 50, 5);
    const RGBA32iImage expected = Entry().makeSettings()->MakeTask().ApplyToCopy(source).picture;
    const auto dialog = Entry().makeWidget(true, nullptr);
    Entry().show(*dialog, *With(settings));
    dialog->FlushPendingChange();
    QSignalSpy ready(dialog.get(), &YDAdjustmentWidget::ImageReady);
    dialog->SetImage(source, {}, {}, {});
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 1, PanelKit::PatienceMs);
    dialog->Reset();
    QTRY_COMPARE_WITH_TIMEOUT(ready.count(), 2, PanelKit::PatienceMs);
    QVERIFY(TestPictures::AreEqual(dialog->AdjustedImage(), expected));
    QTRY_VERIFY_WITH_TIMEOUT(!dialog->IsProcessing(), PanelKit::PatienceMs);
    dialog->Reset(); // starts another one only where it is announced
    dialog->FlushPendingChange();
    QCOMPARE(dialog->IsProcessing(), !byAnotherReset.isEmpty());
}

void TestAdjustmentContracts::MayBeDestroyedInTheMiddle_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isToldToStop");
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        QTest::addRow("%s, during its job", qPrintable(entry.name)) << entry.name << false;
        QTest::addRow("%s, with its job told to stop", qPrintable(entry.name)) << entry.name << true;
    }
}

/// Its job, and whatever counts its picture, ends by itself.
void TestAdjustmentContracts::MayBeDestroyedInTheMiddle()
{
    QFETCH(bool, isToldToStop);
    static const RGBA32iImage picture = TestPictures::Noise(1500, 1000);
    for (const bool isDialog : {false, true}) {
        auto widget = Entry().makeWidget(isDialog, nullptr);
        widget->SetImage(picture, {}, {}, {});
        if (!widget->IsProcessing())
            widget->StartProcessing(); // a panel waits for its host to ask
        QVERIFY(widget->IsProcessing() || !isDialog);
        if (isToldToStop)
            widget->StartProcessing();
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 0);
        widget.reset();
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents(); // what it had sent
    }
}

void TestAdjustmentContracts::NumbersFromOutsideAreKeptAndHarmless_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("preset");
    for (const AdjustmentEntry& entry : AdjustmentCatalog::Entries()) {
        const QByteArray defaults = entry.makeSettings()->ToPreset();
        const int begin = defaults.indexOf("1.00000") + 7;
        for (const char filling : {'\x00', '\x7f', '\x80', '\xff'}) {
            QByteArray preset = defaults;
            preset.replace(begin, preset.size() - begin, QByteArray(preset.size() - begin, filling));
            if (!defaults.isEmpty() && entry.makeSettings()->FromPreset(preset))
                QTest::addRow("%s, %02x", qPrintable(entry.name), quint8(filling)) << entry.name << preset;
        }
    }
}

/// A stored record may hold anything that its fields have room for.
void TestAdjustmentContracts::NumbersFromOutsideAreKeptAndHarmless()
{
    QFETCH(QByteArray, preset);
    const RGBA32iImage source = TestPictures::Random(40, 30, 5);
    const auto settings = Entry().makeSettings();
    QVERIFY(settings->FromPreset(preset));
    const QByteArray stored = settings->ToPreset();
    for (const bool isDialog : {false, true}) {
        const auto widget = Entry().makeWidget(isDialog, nullptr);
        Entry().show(*widget, *settings);
        QCOMPARE(Entry().SettingsOf(*widget)->ToPreset(), stored);
        widget->grab();
        RGBA32iImage image = source.DeepCopy();
        widget->ConvertImage(image, {}, {}, {});
        QCOMPARE(image.Width(), source.Width());
        widget->Reset();
        QCOMPARE(Entry().SettingsOf(*widget)->ToJson(), Entry().makeSettings()->ToJson());
    }
}

QTEST_MAIN(TestAdjustmentContracts)
#include "tst_AdjustmentContracts.moc"
