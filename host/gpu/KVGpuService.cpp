#include "gpu/KVGpuService.h"

#include "gpu/OpenClLibrary.h"
#include "gpu/SelectiveColorsDevice.h"
#include "gpu/SelectiveColorsService.h"

#include <QCoreApplication>

#include <memory>
#include <utility>

namespace {

/// The service of the running application.
struct Instance
{
    std::unique_ptr<KVGpuService> service;
    bool isSettled = false;
};

Instance& TheInstance()
{
    static auto* const instance = new Instance; // no driver is called once statics are being destroyed
    return *instance;
}

void EndInstance()
{
    TheInstance().service.reset();
    TheInstance().isSettled = false;
}

} // namespace

KVGpuService* KVGpuService::get_instance()
{
    Instance& instance = TheInstance();
    if (instance.isSettled || !QCoreApplication::instance() || QCoreApplication::closingDown())
        return instance.service.get();
    instance.isSettled = true;
    qAddPostRoutine(EndInstance);
    std::unique_ptr<SelectiveColorsDevice> device =
        SelectiveColorsService::FindDevice(ChosenGpuUse(), OpenClLibrary::DefaultFileName());
    if (device)
        instance.service = std::make_unique<SelectiveColorsService>(std::move(device));
    return instance.service.get();
}
