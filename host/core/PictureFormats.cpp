#include "core/PictureFormats.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QIODevice>
#include <QImageReader>
#include <QStringList>

#include <cctype>
#include <limits>

namespace {

using PictureFormats::Format;

constexpr Format Formats[] = {
    {"png", "PNG", "png", std::numeric_limits<int>::max()},
    {"jpeg", "JPEG", "jpg jpeg jpe jfif", 65500},
    {"tiff", "TIFF", "tif tiff", std::numeric_limits<int>::max()},
    {"webp", "WebP", "webp", 16383},
    {"bmp", "BMP", "bmp dib", std::numeric_limits<int>::max()},
    {"ppm", "PNM", "ppm pgm pbm pnm", std::numeric_limits<int>::max()},
};

QList<QByteArray> SuffixesOf(const Format& format) { return QByteArray(format.suffixes).split(' '); }

} // namespace

const PictureFormats::Format* PictureFormats::Find(const QByteArray& name)
{
    for (const Format& format : Formats)
        if (name == format.name)
            return &format;
    return nullptr;
}

QByteArray PictureFormats::OfName(const QString& path)
{
    const QByteArray suffix = QFileInfo(path).suffix().toLower().toLatin1();
    for (const Format& format : Formats)
        if (!suffix.isEmpty() && SuffixesOf(format).contains(suffix))
            return format.name;
    return {};
}

QByteArray PictureFormats::OfContent(QIODevice& file)
{
    // The formats of the table are told here, so that no plug-in of another format gets to see a file that is
    // none of its business.
    const QByteArray head = file.peek(16);
    if (head.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (head.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (head.startsWith("II*") || head.startsWith(QByteArray("MM\0*", 4)) || head.startsWith("II+") ||
        head.startsWith(QByteArray("MM\0+", 4)))
        return "tiff";
    if (head.startsWith("RIFF") && head.mid(8, 4) == "WEBP")
        return "webp";
    if (head.startsWith("BM"))
        return "bmp";
    if (head.size() > 2 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' && isspace(uchar(head[2])))
        return "ppm";
    return QImageReader::imageFormat(&file);
}

QList<QByteArray> PictureFormats::Among(const QList<QByteArray>& supported)
{
    QList<QByteArray> formats;
    for (const Format& format : Formats)
        if (supported.contains(format.name))
            formats.append(format.name);
    return formats;
}

QString PictureFormats::Filter(const QList<QByteArray>& supported)
{
    QStringList all;
    QStringList filters;
    for (const Format& format : Formats) {
        if (!supported.contains(format.name))
            continue;
        QStringList patterns;
        for (const QByteArray& suffix : SuffixesOf(format))
            patterns.append(QStringLiteral("*.") + QString::fromLatin1(suffix));
        filters.append(QStringLiteral("%1 (%2)").arg(QString::fromLatin1(format.title),
                                                     patterns.join(QLatin1Char(' '))));
        all += patterns;
    }
    if (filters.isEmpty())
        return {};
    filters.prepend(QCoreApplication::translate("KVImageFileManager", "All pictures (%1)")
                        .arg(all.join(QLatin1Char(' '))));
    return filters.join(QStringLiteral(";;"));
}
