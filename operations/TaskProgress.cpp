#include "operations/TaskProgress.h"

operations::TaskProgress::TaskProgress(QObject* parent) : QObject(parent) {}
