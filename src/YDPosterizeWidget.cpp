#include "YDPosterizeWidget.h"

#include "ScopedDisconnect.h"
#include "ui_PosterizeParamWidget.h"

namespace {

constexpr int DefaultLevels = 4;

} // namespace

YDPosterizeWidget::YDPosterizeWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::PosterizeParamWidget>())
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

operations::Task YDPosterizeWidget::MakeTask() const
{
    return operations::MakeTask(operations::Posterize{GetPosterize()});
}

void YDPosterizeWidget::Reset() { m_ui->m_pPosterizeSpin->setValue(DefaultLevels); }

void YDPosterizeWidget::OnPosterizeChanged(int) { AnnounceChange(&YDPosterizeWidget::PosterizeChanged); }
