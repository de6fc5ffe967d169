#include "batch/InterruptWatch.h"

#include <QSocketNotifier>

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int WatchedSignals[] = {SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t g_pipeEnd = -1;

/// A signal handler may do next to nothing; write() is allowed.
void OnSignal(int signal)
{
    const auto byte = static_cast<unsigned char>(signal);
    [[maybe_unused]] const ssize_t written = ::write(g_pipeEnd, &byte, 1);
}

} // namespace

InterruptWatch::InterruptWatch(QObject* parent) : QObject(parent)
{
    if (::pipe2(m_pipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return; // signals keep their default effect
    g_pipeEnd = m_pipe[1];
    m_notifier = new QSocketNotifier(m_pipe[0], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &InterruptWatch::OnReadable);
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = int(SA_RESETHAND | SA_RESTART); // the second one has its default effect
    for (const int signal : WatchedSignals) {
        struct sigaction current = {};
        if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) // as under nohup
            ::sigaction(signal, &action, nullptr);
    }
}

InterruptWatch::~InterruptWatch()
{
    if (!m_notifier)
        return;
    for (const int signal : WatchedSignals) {
        struct sigaction current = {};
        if (::sigaction(signal, nullptr, &current) == 0 && current.sa_handler == OnSignal)
            std::signal(signal, SIG_DFL);
    }
    ::close(m_pipe[0]);
    ::close(m_pipe[1]);
}

void InterruptWatch::OnReadable()
{
    unsigned char byte = 0;
    if (::read(m_pipe[0], &byte, 1) != 1)
        return;
    m_signal = byte;
    emit Interrupted();
}

void InterruptWatch::EndBy(int signal)
{
    std::signal(signal, SIG_DFL);
    std::raise(signal);
    std::_Exit(EXIT_FAILURE); // where the signal is blocked
}
