#pragma once

#include "adjustmentgui_operations_export.h"

#include <QObject>

namespace operations {

/// How far a running task is, for whoever shows it.
///
/// Both signals come from the threads that work, a few hundred in all, so receivers on other threads connect
/// queued. A task of several passes announces a new range for each.
class ADJUSTMENTGUI_OPERATIONS_EXPORT TaskProgress : public QObject
{
    Q_OBJECT

public:
    explicit TaskProgress(QObject* parent = nullptr);

signals:
    /// A pass begins; its values rise from `minimum` to `maximum`.
    void RangeChanged(int minimum, int maximum);
    void ValueChanged(int value);
};

} // namespace operations
