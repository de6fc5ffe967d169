#pragma once

#include "adjustmentgui_operations_export.h"
#include "operations/Catalog.h"

#include <QCoreApplication>
#include <QString>

#include <memory>

namespace operations {

/// Stored settings of one adjustment: files that hold the parameter stream and nothing else.
///
/// Files are taken for untrusted. One that is cut or holds anything else is refused, rather than standing for
/// the defaults: nobody asks for a preset that does nothing. Errors are texts that name the file and the
/// reason, empty where there was none.
class ADJUSTMENTGUI_OPERATIONS_EXPORT PresetFile
{
    Q_DECLARE_TR_FUNCTIONS(PresetFile)

public:
    struct Content
    {
        const Adjustment* adjustment = nullptr; ///< whose preset it is; null where there is an error
        std::unique_ptr<Settings> settings;     ///< likewise
        QString error;
    };

    [[nodiscard]] static Content Read(const QString& path);
};

} // namespace operations
