#pragma once
#include <AxBaseUI/CAxParameterEditPage.h>

#include <QPointer>

/// A form of a block, on the heap because its parent may be deleted while it is open: false from then on.
class AxPage
{
public:
    explicit AxPage(QWidget* parent) : page(new CAxParameterEditPage(parent)) {}
    ~AxPage() { delete page; }
    AxPage(const AxPage&) = delete;
    AxPage& operator=(const AxPage&) = delete;
    explicit operator bool() const { return !page.isNull(); }
    CAxParameterEditPage* operator->() const { return page; }

private:
    QPointer<CAxParameterEditPage> page;
};
