#include <image/KVImage.h>
#include <operations/Catalog.h>
#include <operations/Levels.h>

#include <cstdio>
#include <thread>

/// Adjusts a picture on a thread of its own, without an application object.
int main()
{
    operations::Levels levels;
    levels.output[0] = {255, 0}; // the negative
    const operations::Task negative = MakeTask(levels);
    const auto brighter = operations::Catalog::Find("brightness-contrast")->makeSettings();
    if (!brighter->FromJson({{"brightness", 20}}).isEmpty())
        return 2;

    const RGBA32iImage picture(64, 48);
    int grey = -1;
    std::thread([&] {
        const RGBA32iImage inverted = negative.ApplyToCopy(picture).picture;
        grey = brighter->MakeTask().Apply(inverted).picture.Row(47)[63].g;
    }).join();
    std::printf("inverted to %d\n", grey);
    return grey == 255 ? 0 : 1;
}
