#pragma once

#include "adjustmentgui_export.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <memory>

/// The connections of a panel's controls, listed once, to be cut while the panel shows what is no edit:
///
///     m_links.Add(m_ui->m_pAmount, QOverload<int>::of(&QSpinBox::valueChanged), this,
///                 &YDTintWidget::OnAmountChanged);
///     ...
///     const ControlLinks::Cut quiet(m_links);
///     m_ui->m_pAmount->setValue(params.amount);
///
/// Links are made in the order in which they were added, each of them once: where a sender's signal and a
/// receiver's slot are connected already, nothing is added to that. All connections of a link's pair are cut,
/// whoever made them. A link whose sender or receiver is gone is passed over, and the list itself may go:
/// that leaves the connections as they are. For the thread of the objects only.
class ADJUSTMENTGUI_EXPORT ControlLinks
{
public:
    class Cut;

    ControlLinks();
    ~ControlLinks() = default;
    ControlLinks(const ControlLinks&) = delete;
    ControlLinks& operator=(const ControlLinks&) = delete;

    /// Makes a link, unless the list's links are cut or broken; it is then made with the others. Signal and
    /// slot are member pointers.
    template <class Sender, class Signal, class Receiver, class Slot>
    void Add(Sender* sender, Signal signal, Receiver* receiver, Slot slot)
    {
        const QPointer<Sender> from(sender);
        const QPointer<Receiver> to(receiver);
        const auto connect = [from, signal, to, slot] {
            if (from && to)
                QObject::connect(from.data(), signal, to.data(), slot, Qt::UniqueConnection);
        };
        const auto disconnect = [from, signal, to, slot] {
            if (from && to)
                QObject::disconnect(from.data(), signal, to.data(), slot);
        };
        Add(Link{connect, disconnect});
    }

    /// Disconnects all links until Make() is called; the end of a Cut does not make them.
    void Break();
    /// Makes all links that are not there; within a Cut, at its end.
    void Make();

private:
    struct Link
    {
        std::function<void()> connect;
        std::function<void()> disconnect;
    };
    struct List;

    void Add(Link link);

    const std::shared_ptr<List> m_list; ///< never null; a Cut has to know whether it is still there
};

/// Cuts all links of a list for a scope and makes them again at the scope's end, of nested scopes at the end
/// of the outermost. The list may go meanwhile, with its widget or without; nothing is made then.
class ADJUSTMENTGUI_EXPORT ControlLinks::Cut
{
public:
    [[nodiscard]] explicit Cut(const ControlLinks& links);
    ~Cut();
    Cut(const Cut&) = delete;
    Cut& operator=(const Cut&) = delete;

private:
    const std::weak_ptr<List> m_list;
};
