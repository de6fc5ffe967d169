#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <QString>

class QWidget;

/// Asks where a picture shall be saved, and how well where the format loses quality.
class SaveDialog
{
    Q_DECLARE_TR_FUNCTIONS(SaveDialog)

public:
    /// JPEG and WebP are written with this quality unless the user says otherwise.
    static constexpr int DefaultQuality = 92;

    struct Answer
    {
        QString path; ///< empty: the user gave up
        QByteArray format;
        int quality = -1;
    };

    /// `path` and `quality` (-1: the default) are proposed.
    static Answer Ask(QWidget* parent, const QString& path, int quality);

    /// Whether the format knows degrees of quality.
    static bool HasQuality(const QByteArray& format);

private:
    static bool AskQuality(QWidget* parent, int& quality);
};
