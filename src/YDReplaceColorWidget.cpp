#include "YDReplaceColorWidget.h"

#include "IsSameColor.h"
#include "PickColor.h"
#include "ShowSwatch.h"
#include "ui_ReplaceColor.h"

#include <array>

namespace {

/// A text for each PositionType, in the order of their values.
constexpr std::array<const char*, 4> PositionTexts{
    QT_TRANSLATE_NOOP("YDReplaceColorWidget", "Left top"),
    QT_TRANSLATE_NOOP("YDReplaceColorWidget", "Right top"),
    QT_TRANSLATE_NOOP("YDReplaceColorWidget", "Left bottom"),
    QT_TRANSLATE_NOOP("YDReplaceColorWidget", "Right bottom"),
};

} // namespace

YDReplaceColorWidget::YDReplaceColorWidget(bool isDialog, QWidget* parent, Qt::WindowFlags flags)
    : YDTaskWidget(isDialog, parent, flags), m_ui(std::make_unique<Ui::ReplaceColor>())
{
    m_ui->setupUi(GetUIContent());
    FillSourcePositions();
    SetValue(m_params);
    Connect();
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

YDReplaceColorWidget::~YDReplaceColorWidget() = default;

void YDReplaceColorWidget::SetValue(const Params& params)
{
    const auto quiet = Disconnect();
    m_params = params;
    m_ui->m_pSourceTolerance->setValue(params.tolerance);
    m_ui->m_pPositionType->setCurrentIndex(GetPositionIndex(PositionType(params.position)));
    SetDestinationColor(params.color);
    m_ui->m_pDestinationOpacity->setValue(params.opacity);
}

int YDReplaceColorWidget::GetPositionIndex(PositionType type) const
{
    return m_ui->m_pPositionType->findData(int(type));
}

YDReplaceColorWidget::PositionType YDReplaceColorWidget::GetPositionType(int index) const
{
    const bool isItem = index >= 0 && index < m_ui->m_pPositionType->count();
    return isItem ? PositionType(m_ui->m_pPositionType->itemData(index).toInt()) : LeftTop;
}

operations::Task YDReplaceColorWidget::MakeTask() const { return operations::MakeTask(m_params); }

void YDReplaceColorWidget::Reset()
{
    SetValue(Params());
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

void YDReplaceColorWidget::OnSourceToleranceChanged(int tolerance)
{
    m_params.tolerance = tolerance;
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

void YDReplaceColorWidget::OnSourcePosTypeChanged(int index)
{
    m_params.position = GetPositionType(index);
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

void YDReplaceColorWidget::OnDestinationOpacityChanged(int opacity)
{
    m_params.opacity = opacity;
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

/// An accepted colour is announced even where it is the one that is shown already.
void YDReplaceColorWidget::OnDestinationColor()
{
    const auto accept = [this](const QColor& color) {
        SetDestinationColor(color);
        AnnounceChange(&YDReplaceColorWidget::ValueChanged);
    };
    const auto preview = [this](const QColor& color) { OnCurrentColorChanged(color); };
    PickColor(this, tr("Select replacement color"), m_params.color, accept, preview);
}

void YDReplaceColorWidget::OnCurrentColorChanged(const QColor& color)
{
    if (IsSameColor(color, m_params.color))
        return;
    SetDestinationColor(color);
    AnnounceChange(&YDReplaceColorWidget::ValueChanged);
}

void YDReplaceColorWidget::SetDestinationColor(const QColor& color)
{
    m_params.color = color;
    ShowSwatch(m_ui->m_pSelectDestinationColor, color);
}

void YDReplaceColorWidget::FillSourcePositions()
{
    m_ui->m_pPositionType->clear();
    int type = LeftTop;
    for (const char* const text : PositionTexts)
        m_ui->m_pPositionType->addItem(QIcon(), tr(text), type++);
}

void YDReplaceColorWidget::Connect()
{
    m_links.Add(m_ui->m_pSourceTolerance, &QSlider::valueChanged, this,
                &YDReplaceColorWidget::OnSourceToleranceChanged);
    m_links.Add(m_ui->m_pPositionType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &YDReplaceColorWidget::OnSourcePosTypeChanged);
    m_links.Add(m_ui->m_pSelectDestinationColor, &QPushButton::clicked, this,
                &YDReplaceColorWidget::OnDestinationColor);
    m_links.Add(m_ui->m_pDestinationOpacity, &QSlider::valueChanged, this,
                &YDReplaceColorWidget::OnDestinationOpacityChanged);
}
