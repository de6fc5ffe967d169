#include "ControlLinks.h"

#include <utility>
#include <vector>

struct ControlLinks::List
{
    std::vector<Link> links;
    int cuts = 0;          ///< scopes that have not ended
    bool isBroken = false; ///< by Break()

    bool IsConnected() const { return cuts == 0 && !isBroken; }
    void Connect() const
    {
        if (IsConnected())
            for (const Link& link : links)
                link.connect();
    }
    void Disconnect() const
    {
        for (const Link& link : links)
            link.disconnect();
    }
};

ControlLinks::ControlLinks() : m_list(std::make_shared<List>()) {}

void ControlLinks::Break()
{
    m_list->isBroken = true;
    m_list->Disconnect();
}

void ControlLinks::Make()
{
    m_list->isBroken = false;
    m_list->Connect();
}

void ControlLinks::Add(Link link)
{
    if (m_list->IsConnected())
        link.connect();
    m_list->links.push_back(std::move(link));
}

ControlLinks::Cut::Cut(const ControlLinks& links) : m_list(links.m_list)
{
    ++links.m_list->cuts;
    links.m_list->Disconnect();
}

ControlLinks::Cut::~Cut()
{
    const std::shared_ptr<List> list = m_list.lock();
    if (!list)
        return;
    --list->cuts;
    list->Connect();
}
