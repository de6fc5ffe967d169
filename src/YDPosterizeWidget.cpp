#include "YDPosterizeWidget.h"

#include "ScopedDisconnect.h"
#include "image/YDIterativePosterizeTransformation.h"
#include "ui_PosterizeParamWidget.h"

namespace {

constexpr int DefaultLevels = 4;

} // namespace

YDPosterizeWidget::YDPosterizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDAdjustmentWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::PosterizeParamWidget>())
{
    m_ui->setupUi(GetUIContent());
    connect(m_ui->m_pPosterizeSpin, QOverload<int>::of(&QSpinBox::valueChanged), this,
            &YDPosterizeWidget::OnPosterizeChanged);
}

YDPosterizeWidget::~YDPosterizeWidget() = default;

int YDPosterizeWidget::GetPosterize() const { return m_ui->m_pPosterizeSpin->value(); }

void YDPosterizeWidget::SetPosterize(int levels)
{
    const ScopedDisconnect quiet(m_ui->m_pPosterizeSpin, QOverload<int>::of(&QSpinBox::valueChanged), this,
                                 &YDPosterizeWidget::OnPosterizeChanged);
    m_ui->m_pPosterizeSpin->setValue(levels);
}

void YDPosterizeWidget::ConvertImage(RGBA32iImage& image, const RGBA32iImage& selection, const QPoint& offset,
                                     const QRect& boundingRect)
{
    Process(MakeData(MakeConversionJob(image, selection, offset, boundingRect)));
}

void YDPosterizeWidget::Reset() { m_ui->m_pPosterizeSpin->setValue(DefaultLevels); }

void YDPosterizeWidget::StartJobWatching(JobWatcher* watcher)
{
    Launch(watcher, &Process, MakeData(MakePreviewJob()));
}

void YDPosterizeWidget::OnPosterizeChanged(int) { AnnounceChange(&YDPosterizeWidget::PosterizeChanged); }

YDPosterizeWidget::PosterizeData YDPosterizeWidget::MakeData(const YDAdjustmentJob& job) const
{
    return {job, m_ui->m_pPosterizeSpin->value()};
}

RGBA32iImage YDPosterizeWidget::Process(const PosterizeData& data)
{
    return RunTransformation(data, YDIterativePosterizeTransformation(data.levels));
}
