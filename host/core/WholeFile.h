#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

#include <functional>

class QIODevice;

/// Files that are read and written as a whole. Thread-safe; errors are texts that name the file and the
/// reason, empty where there was none.
class WholeFile
{
    Q_DECLARE_TR_FUNCTIONS(WholeFile)

public:
    enum class Existing
    {
        Refuse,
        Replace
    };

    /// Looks at the start of a file; returns an error text (without the file's name) for one that is not
    /// wanted.
    using Inspect = std::function<QString(QIODevice&)>;

    struct Content
    {
        QByteArray bytes;
        QString error;
    };

    /// The bytes of the regular file `path`. Anything else (a folder, a pipe, a device) is refused without
    /// waiting for it, and so is a file of more than `maxBytes`. A file that `inspect` does not want is not
    /// read into memory.
    [[nodiscard]] static Content Read(const QString& path, qint64 maxBytes, const Inspect& inspect = {});

    /// Writes `bytes` so that `path` is either what it was or the whole new file at every moment.
    ///
    /// An existing file is replaced only with Existing::Replace; its permissions stay, and a symbolic link
    /// stays a link. With Existing::Refuse the file must not exist when it gets its name: of two writers one
    /// wins, nothing is overwritten. Only a regular file is ever replaced.
    [[nodiscard]] static QString Write(const QString& path, const QByteArray& bytes, Existing existing);

    /// Why `path` cannot become a new file: it exists, or is no regular file. Empty where it can. A quick
    /// answer before long work; Write() checks again.
    [[nodiscard]] static QString WhyNotWritable(const QString& path, Existing existing);

    /// "PATH: REASON", the form of all errors about files.
    static QString Error(const QString& path, const QString& reason);
};
