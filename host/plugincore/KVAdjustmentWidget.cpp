#include "plugincore/KVAdjustmentWidget.h"

KVAdjustmentWidget::KVAdjustmentWidget(QWidget* parent, Qt::WindowFlags flags) : QWidget(parent, flags) {}

void KVAdjustmentWidget::AboutUserParamsChanged() { emit UserParamsChanged(); }
