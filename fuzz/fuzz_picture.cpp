// Picture files from anywhere: they are decoded or refused within limits, and none of it may do harm.

#include "core/KVImageFileManager.h"

#include <QGuiApplication>
#include <QTemporaryFile>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv)
{
    static const QGuiApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const quint8* data, std::size_t size)
{
    static QTemporaryFile file;
    if (!file.isOpen() && !file.open())
        qFatal("No temporary file can be made.");
    file.resize(0);
    file.seek(0);
    file.write(reinterpret_cast<const char*>(data), static_cast<qint64>(size));
    file.flush();
    KVImageFileManager::ReadOptions options;
    options.maxPixels = 4'000'000;
    const auto picture = KVImageFileManager::Read(file.fileName(), options);
    if (picture.image.isNull() == picture.error.isEmpty())
        qFatal("A picture comes without an error, or an error without a picture.");
    return 0;
}
