#pragma once

#include <QObject>
#include <QPointer>

/// Cuts a connection for a scope and makes it again at the scope's end:
///
///     const ScopedDisconnect quiet(m_ui->m_pGammaSlider, &QSlider::valueChanged, this,
///                                  &YDGammaCorrectionWidget::OnGammaSlider);
///
/// Signal and slot are the member pointers that were connected. All connections of the pair are cut and one
/// is made again; none is made where none was, so that nested scopes leave one. Sender and receiver may go
/// meanwhile.
template <class Sender, class Signal, class Receiver, class Slot>
class ScopedDisconnect
{
public:
    [[nodiscard]] ScopedDisconnect(Sender* sender, Signal signal, Receiver* receiver, Slot slot)
        : m_sender(sender), m_signal(signal), m_receiver(receiver), m_slot(slot),
          m_wasConnected(QObject::disconnect(sender, signal, receiver, slot))
    {}
    ~ScopedDisconnect()
    {
        if (m_wasConnected && m_sender && m_receiver)
            QObject::connect(m_sender, m_signal, m_receiver, m_slot);
    }
    ScopedDisconnect(const ScopedDisconnect&) = delete;
    ScopedDisconnect& operator=(const ScopedDisconnect&) = delete;

private:
    const QPointer<Sender> m_sender;
    const Signal m_signal;
    const QPointer<Receiver> m_receiver;
    const Slot m_slot;
    const bool m_wasConnected;
};
