#pragma once

#include <QObject>

class QSocketNotifier;

/// Turns Ctrl-C, and the other signals that ask a program to end, into a Qt signal, so that what is being
/// written can be finished. A second one ends the program at once. One object at a time.
class InterruptWatch : public QObject
{
    Q_OBJECT

public:
    explicit InterruptWatch(QObject* parent = nullptr);
    ~InterruptWatch() override;

    /// The signal that came; 0 for none.
    int Signal() const { return m_signal; }

    /// Ends the program the way the signal would have, so that the caller sees why.
    [[noreturn]] static void EndBy(int signal);

signals:
    void Interrupted();

private:
    void OnReadable();

    int m_signal = 0;
    int m_pipe[2] = {-1, -1};
    QSocketNotifier* m_notifier = nullptr;
};
