#pragma once

#include <QMutex>
#include <QStringList>

/// What is logged while it lives as messages of one type, by any thread; nothing of the log is shown. One at
/// a time.
class LoggedMessages
{
public:
    explicit LoggedMessages(QtMsgType type)
    {
        s_type = type;
        s_messages.clear();
        m_before = qInstallMessageHandler(Note);
    }
    ~LoggedMessages() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY(LoggedMessages)

    QStringList All() const
    {
        const QMutexLocker locker(&s_mutex);
        return s_messages;
    }

private:
    static void Note(QtMsgType type, const QMessageLogContext&, const QString& text)
    {
        const QMutexLocker locker(&s_mutex);
        if (type == s_type)
            s_messages.append(text);
    }

    inline static QMutex s_mutex;
    inline static QtMsgType s_type = QtDebugMsg; ///< set while nobody listens
    inline static QStringList s_messages;
    QtMessageHandler m_before;
};
