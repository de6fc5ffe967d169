#include "KVSelectiveColorsWidget.h"

#include "CheckOnly.h"
#include "KVGpuPreview.h"
#include "gpu/KVGpuService.h"
#include "ui_SelectiveColorsWidget.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>

namespace {

struct TargetColor
{
    const char* text;
    QRgb swatch;
};

/// By index in the combo box, which is the range's key and its place in the list.
constexpr std::array<TargetColor, SelectiveParamsList::Ranges> TargetColors{{
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Reds"), qRgb(197, 32, 83)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Yellows"), qRgb(247, 205, 88)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Greens"), qRgb(0, 152, 87)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Cyans"), qRgb(78, 169, 222)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Blues"), qRgb(36, 108, 188)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Magentas"), qRgb(158, 58, 178)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Whites"), qRgb(255, 255, 255)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Neutrals"), qRgb(148, 148, 148)},
    {QT_TRANSLATE_NOOP("KVSelectiveColorsWidget", "Blacks"), qRgb(0, 0, 0)},
}};

constexpr int SwatchSide = 16;
constexpr float MaxPercent = 100.0f;

/// How long a preview may be on its way; far longer than any takes on a device that works.
constexpr std::chrono::seconds GpuPatience{10};

QPixmap Swatch(QRgb color)
{
    QPixmap pixmap(SwatchSide, SwatchSide);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setBrush(QColor(color));
    painter.drawRect(0, 0, SwatchSide - 1, SwatchSide - 1);
    return pixmap;
}

/// What a spin box shows of a percentage, which a stored record may hold as anything.
int ShownShare(float percent)
{
    return std::isnan(percent) ? 0 : int(std::clamp(percent, -MaxPercent, MaxPercent));
}

} // namespace

QDataStream& operator<<(QDataStream& stream, const SelectiveParamsList& params)
{
    return YDRecord::Insert(stream, params, operations::SelectiveColors::LogName, __LINE__);
}

QDataStream& operator>>(QDataStream& stream, SelectiveParamsList& params)
{
    return YDRecord::Extract(stream, params, operations::SelectiveColors::LogName, __LINE__);
}

KVSelectiveColorsWidget::KVSelectiveColorsWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::SelectiveColorsWidget>())
{
    m_ui->setupUi(GetUIContent());
    InsertTargetColors();
    Connect();
    KVSelectiveColorsWidget::Reset();
    qRegisterMetaType<SelectiveParams>("SelectiveParams");
    qRegisterMetaType<Mode>("Mode");
    qRegisterMetaType<RGBA32iImage>("RGBA32iImage");
    ConnectGpu();
}

KVSelectiveColorsWidget::~KVSelectiveColorsWidget() = default;

SelectiveParamsList KVSelectiveColorsWidget::GetValue() const
{
    SelectiveParamsList params;
    params.targets = m_targets.values();
    params.mode = m_mode;
    return params;
}

void KVSelectiveColorsWidget::SetValue(const SelectiveParamsList& params)
{
    const auto quiet = Disconnect();
    for (int target = 0; target < SelectiveParamsList::Ranges; ++target)
        m_targets[target] = params.targets.value(target);
    m_mode = params.mode;
    ShowTarget();
    ShowMode();
}

void KVSelectiveColorsWidget::SetupActivation(int width, int height)
{
    if (m_gpu)
        m_gpu->BeginFilter(width, height);
}

operations::Task KVSelectiveColorsWidget::MakeTask() const
{
    return operations::MakeProcessorTask(GetValue());
}

void KVSelectiveColorsWidget::Reset()
{
    SetValue(SelectiveParamsList());
    {
        const auto quiet = Disconnect();
        ShowPercentages(SelectiveParams());
        m_ui->m_pRelative->setChecked(true);
        m_ui->m_pColors->setCurrentIndex(0);
    }
    AnnounceChange(&KVSelectiveColorsWidget::ValueChanged);
}

void KVSelectiveColorsWidget::StartJobWatching(JobWatcher* watcher)
{
    if (m_gpu && m_gpu->Start(watcher, MakePreviewJob(), PictureNumber(), GetValue()))
        ForgetProblem();
    else
        YDTaskWidget::StartJobWatching(watcher);
}

void KVSelectiveColorsWidget::OnValueChanged()
{
    const int target = m_ui->m_pColors->currentIndex();
    if (target < 0)
        return;
    m_targets[target] = {float(m_ui->m_pCyan->value()), float(m_ui->m_pMagenta->value()),
                         float(m_ui->m_pYellow->value()), float(m_ui->m_pBlack->value())};
    // Not in the usual order: listeners to the value find the restart of the preview under way.
    AboutUserParamsChanged();
    emit DataChanged();
    emit ValueChanged();
}

void KVSelectiveColorsWidget::OnTargetColorsChanged()
{
    const auto quiet = Disconnect();
    ShowTarget();
}

void KVSelectiveColorsWidget::OnModeChanged()
{
    const Mode mode = m_ui->m_pRelative->isChecked() ? Mode::Relative : Mode::Absolute;
    if (mode == m_mode)
        return;
    m_mode = mode;
    AnnounceChange(&KVSelectiveColorsWidget::ValueChanged);
}

void KVSelectiveColorsWidget::OnGpuResultReady(const RGBA32iImage& image)
{
    if (m_gpu)
        m_gpu->Take(image);
}

void KVSelectiveColorsWidget::AbortJob()
{
    if (m_gpu)
        m_gpu->Abort();
}

void KVSelectiveColorsWidget::hideEvent(QHideEvent* event)
{
    if (m_gpu)
        m_gpu->EndFilter();
    YDAdjustmentWidget::hideEvent(event);
}

void KVSelectiveColorsWidget::InsertTargetColors()
{
    for (const TargetColor& target : TargetColors)
        m_ui->m_pColors->addItem(Swatch(target.swatch), tr(target.text));
}

void KVSelectiveColorsWidget::ConnectGpu()
{
    KVGpuService* const service = KVGpuService::get_instance();
    if (!service)
        return;
    m_gpu = std::make_unique<KVGpuPreview>(*service, GpuPatience);
    connect(service, &KVGpuService::finished, this, &KVSelectiveColorsWidget::OnGpuResultReady,
            Qt::QueuedConnection);
    // The preview starts anew, and then by way of the processor.
    connect(m_gpu.get(), &KVGpuPreview::Failed, this, &KVSelectiveColorsWidget::StartProcessing);
    connect(this, &YDAdjustmentWidget::SourceChanged, m_gpu.get(),
            [this] { m_gpu->ForgetAllBut(PictureNumber()); });
}

void KVSelectiveColorsWidget::Connect()
{
    const auto changed = QOverload<int>::of(&QSpinBox::valueChanged);
    for (QSpinBox* const spin : {m_ui->m_pCyan, m_ui->m_pMagenta, m_ui->m_pYellow, m_ui->m_pBlack})
        m_links.Add(spin, changed, this, &KVSelectiveColorsWidget::OnValueChanged);
    m_links.Add(m_ui->m_pColors, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &KVSelectiveColorsWidget::OnTargetColorsChanged);
    for (QRadioButton* const button : {m_ui->m_pRelative, m_ui->m_pAbsolute})
        m_links.Add(button, &QRadioButton::clicked, this, &KVSelectiveColorsWidget::OnModeChanged);
}

/// Leaves the spin boxes alone where no range is chosen.
void KVSelectiveColorsWidget::ShowTarget()
{
    const int target = m_ui->m_pColors->currentIndex();
    if (target >= 0)
        ShowPercentages(m_targets[target]);
}

void KVSelectiveColorsWidget::ShowPercentages(const SelectiveParams& params)
{
    m_ui->m_pCyan->setValue(ShownShare(params.cyan));
    m_ui->m_pMagenta->setValue(ShownShare(params.magenta));
    m_ui->m_pYellow->setValue(ShownShare(params.yellow));
    m_ui->m_pBlack->setValue(ShownShare(params.black));
}

/// Any mode but the relative one counts as absolute.
void KVSelectiveColorsWidget::ShowMode()
{
    CheckOnly({m_ui->m_pRelative, m_ui->m_pAbsolute}, m_mode == Mode::Relative ? 0 : 1);
}
