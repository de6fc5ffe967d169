#pragma once

#include <QMutex>
#include <QStringList>

/// What is logged as a warning while it lives, by any thread; nothing of it is shown. One at a time.
class LoggedWarnings
{
public:
    LoggedWarnings()
    {
        s_warnings.clear();
        m_before = qInstallMessageHandler(Note);
    }
    ~LoggedWarnings() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY(LoggedWarnings)

    QStringList All() const
    {
        const QMutexLocker locker(&s_mutex);
        return s_warnings;
    }

private:
    static void Note(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        const QMutexLocker locker(&s_mutex);
        if (type == QtWarningMsg)
            s_warnings.append(text);
    }

    inline static QMutex s_mutex;
    inline static QStringList s_warnings;
    QtMessageHandler m_before;
};
