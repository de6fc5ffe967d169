#include "core/WholeFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSaveFile>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// No byte array of Qt 5 holds more.
constexpr qint64 MaxByteArraySize = (qint64(1) << 31) - 64;

constexpr qint64 ChunkSize = 65536;

QString ReasonOf(int error) { return qt_error_string(error); }

QString WhyNotRegular(mode_t mode)
{
    if (S_ISREG(mode))
        return {};
    return S_ISDIR(mode) ? WholeFile::tr("it is a folder") : WholeFile::tr("it is not a regular file");
}

/// Opens a regular file. The check before opening keeps hands off devices; O_NONBLOCK and the check after it
/// hold even when the name changes hands in between, so that a pipe never blocks.
QString OpenRegular(const QString& path, QFile& file)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info = {};
    if (::stat(name.constData(), &info) != 0)
        return ReasonOf(errno);
    if (const QString reason = WhyNotRegular(info.st_mode); !reason.isEmpty())
        return reason;
    const int descriptor = ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return ReasonOf(errno);
    if (::fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(descriptor);
        return WholeFile::tr("it is not a regular file");
    }
    if (!file.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return file.errorString();
    }
    return {};
}

/// Memory grows with what really comes: a file may be longer than it says, as those of the kernel are.
QByteArray ReadUpTo(QFile& file, qint64 limit)
{
    QByteArray bytes = file.read(file.size());
    while (bytes.size() < limit) {
        const QByteArray more = file.read(qMin(ChunkSize, limit - bytes.size()));
        if (more.isEmpty())
            break;
        bytes.append(more);
    }
    return bytes;
}

QString SaveReplacing(const QString& path, const QByteArray& bytes)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    // A short write is remembered by the file: commit() fails then and drops the temporary file.
    if (file.write(bytes) != bytes.size()) {
        const QString reason = file.errorString();
        file.cancelWriting();
        return reason;
    }
    return file.commit() ? QString() : file.errorString();
}

/// Gives the file `from` the name `to` unless something has that name already; atomic.
int RenameToNewName(const QString& from, const QString& to)
{
    const QByteArray source = QFile::encodeName(from);
    const QByteArray target = QFile::encodeName(to);
#ifdef RENAME_NOREPLACE
    if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
#endif
    // File systems without that kind of renaming have hard links as a rule.
    if (::link(source.constData(), target.constData()) != 0)
        return errno;
    ::unlink(source.constData());
    return 0;
}

QString SaveAsNew(const QString& path, const QByteArray& bytes)
{
    const QString folder = QFileInfo(path).absolutePath();
    const quint64 number = QRandomGenerator::system()->generate64();
    const QString staged =
        QDir(folder).filePath(QStringLiteral(".adjust-%1.part").arg(number, 16, 16, QLatin1Char('0')));
    if (const QString reason = SaveReplacing(staged, bytes); !reason.isEmpty())
        return reason;
    const int error = RenameToNewName(staged, path);
    if (error == 0)
        return {};
    QFile::remove(staged);
    return error == EEXIST ? WholeFile::tr("the file exists already") : ReasonOf(error);
}

QString WhyNotWritableReason(const QString& path, WholeFile::Existing existing)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info = {};
    if (::lstat(name.constData(), &info) != 0)
        return errno == ENOENT ? QString() : ReasonOf(errno);
    if (S_ISDIR(info.st_mode))
        return WholeFile::tr("it is a folder");
    if (existing == WholeFile::Existing::Refuse)
        return WholeFile::tr("the file exists already");
    if (::stat(name.constData(), &info) != 0)
        return errno == ENOENT ? QString() : ReasonOf(errno); // a link whose file is still to come
    return WhyNotRegular(info.st_mode);
}

} // namespace

QString WholeFile::Error(const QString& path, const QString& reason)
{
    return QStringLiteral("%1: %2").arg(path, reason);
}

WholeFile::Content WholeFile::Read(const QString& path, qint64 maxBytes, const Inspect& inspect)
{
    QFile file;
    if (const QString reason = OpenRegular(path, file); !reason.isEmpty())
        return {{}, Error(path, reason)};
    if (inspect) {
        if (const QString reason = inspect(file); !reason.isEmpty())
            return {{}, Error(path, reason)};
        if (!file.seek(0))
            return {{}, Error(path, file.errorString())};
    }
    const qint64 limit = qBound(qint64(0), maxBytes, MaxByteArraySize);
    Content content;
    if (file.size() <= limit)
        content.bytes = ReadUpTo(file, limit);
    if (file.error() != QFileDevice::NoError)
        return {{}, Error(path, file.errorString())};
    if (!file.atEnd())
        return {{}, Error(path, tr("the file is larger than %1 bytes").arg(limit))};
    return content;
}

QString WholeFile::Write(const QString& path, const QByteArray& bytes, Existing existing)
{
    QString reason = WhyNotWritableReason(path, existing);
    if (reason.isEmpty())
        reason = existing == Existing::Replace ? SaveReplacing(path, bytes) : SaveAsNew(path, bytes);
    return reason.isEmpty() ? QString() : Error(path, reason);
}

QString WholeFile::WhyNotWritable(const QString& path, Existing existing)
{
    const QString reason = WhyNotWritableReason(path, existing);
    return reason.isEmpty() ? QString() : Error(path, reason);
}
