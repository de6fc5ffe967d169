#include "YDPhotoFilterWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "ui_PhotoFilterWidget.h"

#include <array>

namespace {

struct Preset
{
    const char* text;
    QRgb color;
};

/// "Custom" has the transparent colour, which is no filter's. The texts are those that stored translations
/// and people know, the fourth filter's spelling included.
constexpr std::array<Preset, 21> Presets{{
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Custom"), 0x00000000},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Warming Filter (85)"), 0xffec8a00},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Warming Filter (LBA)"), 0xfffa9600},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Warming Filter (81)"), 0xffebb113},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Coolling Filter (80)"), 0xff006dff},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Cooling Filter (LBB)"), 0xff005dff},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Cooling Filter (82)"), 0xff00b5ff},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Red"), 0xffea1a1a},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Orange"), 0xfff38417},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Yellow"), 0xfff9e31c},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Green"), 0xff19c919},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Cyan"), 0xff1dcbea},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Blue"), 0xff1d35ea},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Violet"), 0xff9b1dea},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Magenta"), 0xffe318e3},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Sepia"), 0xffac7a33},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Deep Red"), 0xffff0000},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Deep Blue"), 0xff0022cd},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Deep Emerald"), 0xff008c00},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Deep Yellow"), 0xffffd500},
    {QT_TRANSLATE_NOOP("YDPhotoFilterWidget", "Underwater"), 0xff00c1b1},
}};

constexpr QColor CustomColor(0, 0, 0, 0);

} // namespace

YDPhotoFilterWidget::YDPhotoFilterWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::PhotoFilterWidget>())
{
    m_ui->setupUi(GetUIContent());
    FillPresets();
    connect(m_ui->m_pPresetList, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &YDPhotoFilterWidget::OnPresetChanged);
    SetValue(m_params);
    Connect();
}

YDPhotoFilterWidget::~YDPhotoFilterWidget() = default;

void YDPhotoFilterWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params.density = params.density;
    SetColor(params.color);
    m_ui->m_pDensity->setValue(params.density);
}

operations::Task YDPhotoFilterWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDPhotoFilterWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDPhotoFilterWidget::ValueChanged);
}

void YDPhotoFilterWidget::OnColor()
{
    const auto take = [this](const QColor& color) { OnCurrentColorChanged(color); };
    PickColor(this, tr("Select a filter color"), m_params.color, take, take);
}

void YDPhotoFilterWidget::OnCurrentColorChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.color))
        return;
    SetColor(color);
    AnnounceChange(&YDPhotoFilterWidget::ValueChanged);
}

void YDPhotoFilterWidget::OnDensityChanged(int density)
{
    m_params.density = density;
    AnnounceChange(&YDPhotoFilterWidget::ValueChanged);
}

/// "Custom" leaves the colour as it is.
void YDPhotoFilterWidget::OnPresetChanged(int index)
{
    const auto color = m_ui->m_pPresetList->itemData(index).value<QColor>();
    if (color != CustomColor)
        OnCurrentColorChanged(color);
}

void YDPhotoFilterWidget::Connect()
{
    m_links.Add(m_ui->m_pColor, &QPushButton::clicked, this, &YDPhotoFilterWidget::OnColor);
    m_links.Add(m_ui->m_pDensity, QOverload<int>::of(&QSpinBox::valueChanged), this,
                &YDPhotoFilterWidget::OnDensityChanged);
}

void YDPhotoFilterWidget::FillPresets()
{
    for (const Preset& preset : Presets)
        m_ui->m_pPresetList->addItem(tr(preset.text), QColor::fromRgba(preset.color));
}

void YDPhotoFilterWidget::UpdatePresetIndex(const QColor& color)
{
    QComboBox* const list = m_ui->m_pPresetList;
    const int preset = list->findData(color);
    const int index = preset >= 0 ? preset : list->findData(CustomColor);
    if (index >= 0)
        list->setCurrentIndex(index);
}

/// The colour is stored first: the list, whose slot is always connected, then finds nothing to change.
void YDPhotoFilterWidget::SetColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pColor, color);
    UpdatePresetIndex(color);
}
