#include "plugincore/KVAdjustmentWidget.h"

#include "theme/ThemeImages.h"

KVAdjustmentWidget::KVAdjustmentWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags)
{
    ThemeImages::Install();
}

void KVAdjustmentWidget::AboutUserParamsChanged() { emit UserParamsChanged(); }
