#include "overlay/StampCache.h"

#include "core/KVImageFileManager.h"
#include "core/WholeFile.h"

#include <QCache>
#include <QCoreApplication>
#include <QDateTime>
#include <QFileInfo>

#include <mutex>

namespace {

constexpr int BudgetKiB = 256 * 1024;
constexpr int BytesPerKiB = 1024;

/// A file as it was when it was read, and the room that its picture was fitted into.
struct Key
{
    QString path;
    qint64 modifiedMs;
    qint64 bytes;
    QSize room; ///< empty: the picture is as the file has it

    friend bool operator==(const Key& a, const Key& b)
    {
        return a.path == b.path && a.modifiedMs == b.modifiedMs && a.bytes == b.bytes && a.room == b.room;
    }
    friend uint qHash(const Key& key)
    {
        return qHash(key.path) ^ qHash(key.modifiedMs) ^ qHash(key.room.width()) ^
               (qHash(key.room.height()) << 1);
    }
};

QImage Fitted(const QImage& whole, const QSize& room)
{
    if (whole.width() <= room.width() && whole.height() <= room.height())
        return whole.convertToFormat(QImage::Format_ARGB32);
    const QSize size = whole.size().scaled(room, Qt::KeepAspectRatio).expandedTo(QSize(1, 1));
    return whole.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32);
}

class Store
{
public:
    StampCache::Picture Fitting(const QString& path, const QSize& room)
    {
        const QFileInfo file(path);
        const Key whole{file.absoluteFilePath(), file.lastModified().toMSecsSinceEpoch(), file.size(),
                        QSize()};
        Key fitted = whole;
        fitted.room = room;
        // Held while a file is decoded: of two threads that want the same stamp, one waits for the other.
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (const QImage* const kept = m_images.object(fitted))
            return {*kept, {}};
        StampCache::Picture picture = Whole(whole, path);
        if (!picture.error.isEmpty())
            return picture;
        picture.image = Fitted(picture.image, room);
        if (picture.image.isNull())
            return {{},
                    WholeFile::Error(
                        path, QCoreApplication::translate("StampCache", "there is not enough memory"))};
        Keep(fitted, picture.image);
        return picture;
    }

private:
    StampCache::Picture Whole(const Key& key, const QString& path)
    {
        if (const QImage* const kept = m_images.object(key))
            return {*kept, {}};
        const KVImageFileManager::ReadResult read = KVImageFileManager::Read(path);
        if (read.error.isEmpty())
            Keep(key, read.image);
        return {read.image, read.error};
    }

    /// What is larger than the whole budget is not kept, and costs nothing else its place.
    void Keep(const Key& key, const QImage& image)
    {
        const qint64 cost = qint64(image.sizeInBytes()) / BytesPerKiB + 1;
        if (cost <= BudgetKiB)
            m_images.insert(key, new QImage(image), int(cost));
    }

    std::mutex m_mutex;
    QCache<Key, QImage> m_images{BudgetKiB}; ///< guarded by m_mutex
};

} // namespace

StampCache::Picture StampCache::Fitting(const QString& path, const QSize& room)
{
    static Store store;
    return store.Fitting(path, room);
}
