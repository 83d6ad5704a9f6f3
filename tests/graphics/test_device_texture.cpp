// Textures, image files, texel formats and shared records on the scripted device.

#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <thread>
#include <tuple>

#include "graphics/FakeImageCodec.h"
#include "graphics/device/DXGTexture.h"
#include "graphics/device/ImageLoader.h"
#include "graphics/device/TexelFormats.h"
#include "support/ScriptedFoundation.h"

namespace {

using support::TakeErrors;

using DXG::Texture;
using DXG::TextureType;
using platform::DeviceResult;
using platform::PixelFormat;
using enum DXG::TextureType;
using enum platform::ImageLayout;
using enum platform::PixelFormat;

const std::string stack = "  -call stack:\n\n";

platform::ScriptedTexture& ObjectOf(const Texture& texture) {
    return dynamic_cast<platform::ScriptedTexture&>(*texture.Record()->api.object);
}

struct Textures : testing::Test {
    support::TestFolder folder;
    support::ScriptedFoundation foundation;
    platform::ScriptedGraphics& scripted = foundation.scripted;
    Textures() { FakePictures().clear(); }
    ~Textures() override {
        foundation.Stop();
        EXPECT_TRUE(scripted.faults.empty()) << scripted.faults.front();
        EXPECT_EQ(scripted.liveObjects, 0);
        EXPECT_TRUE(Texture::Records().empty());
    }
    // A 16-bit desktop.
    void UseShallowColour() {
        foundation.Stop();
        scripted.script.desktopBits = 16;
        ASSERT_TRUE(foundation.Start());
    }
};

TEST_F(Textures, OneFileIsOneRecord) {
    AddPicture("Data\\A.bmp", 16, 16, Rgb24);
    Texture first, second, copy;
    EXPECT_TRUE(first.Load("Data\\A.bmp", AsFile, false, false));
    EXPECT_TRUE(second.Load("data\\a.BMP", AsFile, true, true));
    EXPECT_TRUE(first.Load("DATA\\A.BMP", Free, false, false)) << "it holds that file already";
    copy = first;
    EXPECT_TRUE(first.IsSameAs(second) && copy.IsSameAs(second));
    EXPECT_EQ(scripted.CallsNamed("CreateTexture").size(), 1U);
    first.Release();
    copy.Release();
    EXPECT_EQ(second.FileName(), "Data\\A.bmp");
}

TEST_F(Textures, ImagesThatCannotBeUsedAreReported) {
    AddPicture("hundred.bmp", 100, 100, Rgb24);
    AddPicture("damaged.bmp", 16, 16, Rgb24).status = platform::ImageStatus::InvalidData;
    AddPicture("fine.bmp", 16, 16, Rgb24);
    const std::string failed = "Failed to load image ";
    const std::string hundred = "Unable to load image \"hundred.bmp\"\n  -dimensions must be powers of 2\n";
    using enum DeviceResult;
    const std::tuple<const char*, TextureType, DeviceResult, std::string> rows[] = {
        {"fine.bmp", Free, Ok, "Error: attempt to load texture of type FREE\n" + stack},
        {"none.bmp", AsFile, Ok, failed + "\"none.bmp\"\n" + stack},
        {"hundred.bmp", AsFile, Ok, hundred + stack},
        {"damaged.bmp", AsFile, Ok, failed + "\"damaged.bmp\"\n  -file contains invalid data\n" + stack},
        {"fine.bmp", CubeMap, Ok, failed + "\"fine.bmp\"\n  -graphics device doesn't support requested type\n" + stack},
        {"fine.bmp", Colour, OutOfVideoMemory, failed + "\"fine.bmp\"\n  -graphics device out of memory\n" + stack},
        {"fine.bmp", Colour, Failed, failed + "\"fine.bmp\"\n" + stack}};
    for (const auto& [file, type, creation, errors] : rows) {
        scripted.script.createTexture = {creation};
        Texture texture;
        EXPECT_FALSE(texture.Load(file, type, false, false) || texture.IsLoaded());
        EXPECT_EQ(TakeErrors(), errors);
    }
}

TEST_F(Textures, LevelsAndAspect) {
    struct Row {
        unsigned width, height;
        bool mipmaps;
        unsigned levels;
        bool warned;
    };
    const Row rows[] = {{256, 64, true, 4, false}, {256, 64, false, 1, false}, {16, 16, true, 2, false},
                        {8, 8, true, 1, false},    {1, 1, true, 1, false},     {256, 32, true, 3, false},
                        {512, 32, true, 3, true},  {2, 32, false, 1, true}};
    for (const Row& row : rows) {
        AddPicture("a.bmp", row.width, row.height, Rgb24);
        Texture texture;
        ASSERT_TRUE(texture.Load("a.bmp", AsFile, row.mipmaps, true));
        EXPECT_EQ(ObjectOf(texture).Levels(), row.levels) << row.width << " x " << row.height;
        EXPECT_EQ(texture.Record()->mipmapped, row.mipmaps);
        EXPECT_EQ(TakeErrors(),
                  row.warned ? "warning: image \"a.bmp\" loaded successfully, but aspect ratio is greater than 8\n"
                               "  -aspect ratio more than 8 not recommended for best compatability with older "
                               "hardware\n  -call stack:\n\n"
                             : "");
    }
}

TEST_F(Textures, FormatsFollowTypeFileAndDesktop) {
    struct Row {
        TextureType type;
        platform::ImageLayout layout;
        bool colourKey;
        PixelFormat deep, shallow;
        TextureType typeAfter;
    };
    const Row rows[] = {{AsFile, Rgb24, false, X8R8G8B8, X8R8G8B8, Colour},
                        {AsFile, Indexed8, true, A8R8G8B8, A8R8G8B8, ColourAlpha},
                        {AsFile, Argb32, false, A8R8G8B8, A8R8G8B8, ColourAlpha},
                        {Alpha, Argb32, false, A8, A8, Alpha},
                        {Colour, Argb32, false, X8R8G8B8, R5G6B5, Colour},
                        {ColourAlpha, Rgb32, false, A8R8G8B8, A4R4G4B4, ColourAlpha}};
    for (const bool shallow : {false, true}) {
        if (shallow) UseShallowColour();
        for (const Row& row : rows) {
            AddPicture("a.png", 4, 4, row.layout);
            Texture texture;
            ASSERT_TRUE(row.colourKey ? texture.LoadCC("a.png") : texture.Load("a.png", row.type, false, false));
            EXPECT_EQ(ObjectOf(texture).Format(), shallow ? row.shallow : row.deep);
            EXPECT_EQ(texture.Type(), row.typeAfter);
        }
    }
    scripted.script.textureFormats.clear();
    for (const auto& [type, format] : {std::pair{Colour, X8R8G8B8}, std::pair{ColourAlpha, A1R5G5B5}}) {
        Texture texture;
        ASSERT_TRUE(texture.Load("a.png", type, false, false));
        EXPECT_EQ(ObjectOf(texture).Format(), format) << "the device cannot sample the one wanted";
    }
    scripted.script.textureFormatGiven = D16;
    Texture odd;
    EXPECT_TRUE(odd.Create(4, 4, Colour, 1, false));
    EXPECT_EQ(odd.Type(), ColourAlpha);
    EXPECT_EQ(TakeErrors().find("Internal DXG Error: unable to deduce texture type"), 0U);
}

TEST_F(Textures, ColourKeyAndSmallerLevels) {
    FakePicture& picture = AddPicture("a.bmp", 16, 16, Rgb24, 0xFF000000U);
    for (unsigned i : {1U, 16U, 17U})
        picture.image.argb[i] = 0xFF0500FFU;
    Texture keyed;
    ASSERT_TRUE(keyed.LoadCC("a.bmp"));
    EXPECT_EQ(ObjectOf(keyed).TexelAt(0, 0, 0), 0U);
    EXPECT_EQ(ObjectOf(keyed).TexelAt(0, 1, 1), 0xFF0500FFU);
    EXPECT_TRUE(keyed.Load("a.bmp", AsFile, true, true)) << "the same file";
    keyed.Release();
    for (const auto& [smooth, texel] : {std::pair{true, 0xFF0400BFU}, {false, 0xFF000000U}}) {
        Texture texture;
        ASSERT_TRUE(texture.Load("a.bmp", AsFile, true, smooth));
        EXPECT_EQ(ObjectOf(texture).TexelAt(1, 0, 0), texel);
    }
}

TEST(TexelFormats, PackEachFormat) {
    const std::uint32_t pixel = 0x80FF7F3FU;
    struct Row {
        PixelFormat format;
        std::uint64_t texel;
    };
    const Row rows[] = {{A8R8G8B8, 0x80FF7F3F},
                        {X8R8G8B8, 0xFFFF7F3F},
                        {A8B8G8R8, 0x803F7FFF},
                        {R5G6B5, 0xFBE7},
                        {X1R5G5B5, 0xFDE7},
                        {A4R4G4B4, 0x8F73},
                        {A1R5G5B5, 0xFDE7},
                        {A8, 0x80},
                        {A16B16G16R16, 0x80803F3F7F7FFFFF}};
    for (const auto& [format, expected] : rows) {
        std::uint64_t texel = 0;
        ASSERT_TRUE(DXG::WriteTexels({&pixel, 1, 1}, format, false, reinterpret_cast<unsigned char*>(&texel), 8));
        EXPECT_EQ(texel, expected) << platform::NameOf(format);
    }
    EXPECT_FALSE(DXG::WriteTexels({&pixel, 1, 1}, P8, false, nullptr, 0));
    // Dithering spreads a value between two levels over neighbouring texels.
    std::uint32_t greys[16];
    std::fill(std::begin(greys), std::end(greys), 0xFF000084U);
    std::uint16_t dithered[16];
    ASSERT_TRUE(DXG::WriteTexels({greys, 4, 4}, A4R4G4B4, true, reinterpret_cast<unsigned char*>(dithered), 8));
    EXPECT_EQ(std::count(std::begin(dithered), std::end(dithered), 0xF009), 4);
    EXPECT_EQ(std::count(std::begin(dithered), std::end(dithered), 0xF008), 12);
}

TEST_F(Textures, CreationChecksItsArguments) {
    Texture texture;
    const auto fails = [&](unsigned width, unsigned height, TextureType type, unsigned depth, const char* errors) {
        EXPECT_FALSE(texture.Create(width, height, type, depth, false) || texture.IsLoaded());
        EXPECT_EQ(TakeErrors(), errors);
    };
    fails(100, 64, Colour, 1, "Cannot create texture:\n  -dimensions must be powers of 2\n  -call stack:\n\n");
    fails(64, 64, Colour, 0, "Cannot create texture:\n  -dimensions must be powers of 2\n  -call stack:\n\n");
    fails(64, 64, CubeMap, 2, "Cube Maps can't be 3D...\n");
    fails(64, 32, CubeMap, 1, "Cube maps can't have non-square sides...\n");
    fails(64, 64, AsFile, 1, "unsupported or unimplemented format in (DirectX)Texture::Create.\n");
    EXPECT_TRUE(texture.Create(64, 32, Alpha, 1, true) && texture.Create(64, 64, CubeMap, 1, false));
    EXPECT_TRUE(texture.Create(8, 4, ColourAlpha, 2, true));
    EXPECT_EQ(TakeErrors(), "warning: 3D textures can't be mipmapped, but was requested (no plans to implement).\n");
    EXPECT_EQ(scripted.CallsNamed("CreateTexture"),
              (std::vector<std::string>{"CreateTexture 0 64 32 1 1 A8", "CreateTexture 1 64 64 1 0 A8R8G8B8",
                                        "CreateTexture 2 8 4 2 1 A8R8G8B8"}));
    scripted.script.createTexture = {DeviceResult::Failed, DeviceResult::Failed};
    EXPECT_FALSE(texture.Create(4, 4, Colour, 1, false));
    EXPECT_EQ(TakeErrors().find("pD3DDev->CreateTexture failed.\n  -call stack:   "), 0U);
    EXPECT_FALSE(texture.Create(4, 4, CubeMap, 1, false));
    EXPECT_EQ(TakeErrors().find("pD3DDev->CreateCubeTexture failed.\n  -call stack:    "), 0U);
}

TEST_F(Textures, LocksReadTexels) {
    Texture texture;
    EXPECT_FALSE(texture.Lock(true));
    EXPECT_EQ(TakeErrors(), "Error... attempt to lock a non-existant texture.\n  -call stack:\n\n");
    ASSERT_TRUE(texture.Create(4, 2, ColourAlpha, 1, false));
    {
        DXG::TextureLock lock = texture.Lock(true);
        ASSERT_TRUE(lock);
        EXPECT_TRUE(ObjectOf(texture).lastLockReadOnly);
        EXPECT_EQ(lock.bitsPerTexel, 32U);
        const std::uint32_t mark = 0x12345678U;
        std::memcpy(lock.data[0] + lock.rowPitch[0] + 3 * 4, &mark, 4);
        EXPECT_EQ(lock.ReadTexel(3, 1), mark);
        for (const auto& [x, y] : {std::pair{-1, 0}, {4, 0}, {0, -1}, {0, 2}})
            EXPECT_EQ(lock.ReadTexel(x, y), 0U);
        EXPECT_EQ(lock.ReadLinear(4.0F, 0.0F), 0U);
        EXPECT_EQ(TakeErrors(), "");
        EXPECT_EQ(lock.ReadLinear(3.5F, 1.0F), 0U);
        EXPECT_EQ(TakeErrors(), "linear sample not implemented yet...\n");
        const DXG::TextureLock moved = std::move(lock);
    }
    EXPECT_EQ(ObjectOf(texture).openLocks, 0);
    ASSERT_TRUE(texture.Create(2, 2, Alpha, 1, false));
    EXPECT_EQ(texture.Lock(false).ReadTexel(1, 1), 0xCDU) << "one byte a texel, none of its neighbours";
    ASSERT_TRUE(texture.Create(4, 4, CubeMap, 1, false));
    scripted.script.refusedFace = 4;
    EXPECT_FALSE(texture.Lock(false));
    EXPECT_EQ(ObjectOf(texture).openLocks, 0) << "the faces locked before are unlocked";
    scripted.script.texturesLock = false;
    ASSERT_TRUE(texture.Create(4, 4, Alpha, 1, false));
    EXPECT_FALSE(texture.Lock(false));
    ASSERT_TRUE(texture.Create(4, 4, Alpha, 2, false));
    EXPECT_FALSE(texture.Lock(false));
    EXPECT_EQ(TakeErrors(),
              "cube face failed to lock.\nFailed to lock texture for some reason...\n"
              "Failed to lock volume for some reason...\n");
}

TEST_F(Textures, SetBindsTextureAndSampler) {
    Texture texture;
    texture.Set(0);
    EXPECT_EQ(TakeErrors(), "Set called on a non-loaded texture.\n  -call stack:\n\n");
    ASSERT_TRUE(texture.Create(4, 4, Colour, 2, false));
    texture.SetWrap(true, false, false);
    const platform::SamplerState& sampler = scripted.device->samplers[3];
    texture.SetFilter(3);
    texture.Set(3);
    EXPECT_EQ(sampler.minify, platform::TextureFilter::Anisotropic);
    EXPECT_EQ(sampler.u, platform::TextureAddress::Wrap);
    EXPECT_EQ(sampler.v, platform::TextureAddress::Clamp);
    EXPECT_EQ(sampler.w, platform::TextureAddress::Clamp) << "a volume";
    EXPECT_EQ(scripted.device->current.textures[3], &ObjectOf(texture));
    texture.Release();
    EXPECT_EQ(scripted.device->current.textures[3], nullptr);
}

TEST_F(Textures, VolumesComeFromListsOfLayers) {
    folder.Write("vol/fog.T3D", "a.bmp\r\n  b.bmp\t");
    AddPicture("vol\\a.bmp", 4, 2, Argb32, 0x11223344U);
    AddPicture("vol\\b.bmp", 4, 2, Argb32, 0x55667788U);
    AddPicture("vol\\c.bmp", 4, 2, Rgb24);
    AddPicture("vol\\d.bmp", 4, 4, Argb32);
    Texture fog, again;
    ASSERT_TRUE(fog.Load("vol\\fog.T3D", AsFile, false, false));
    EXPECT_TRUE(again.Load("VOL\\fog.t3d", AsFile, false, false));
    EXPECT_TRUE(fog.IsSameAs(again));
    EXPECT_EQ(ObjectOf(fog).TexelAt(0, 3, 1, 0), 0x11223344U);
    EXPECT_EQ(ObjectOf(fog).TexelAt(0, 0, 0, 1), 0x55667788U);
    AddPicture("vol\\e.bmp", 4, 2, Indexed8, 0xFFFFFFFFU);
    folder.Write("vol/mask.t3d", "e.bmp e.bmp");
    ASSERT_TRUE(again.Load("vol\\mask.t3d", AsFile, false, false));
    EXPECT_EQ(again.Type(), Alpha);
    EXPECT_EQ(ObjectOf(again).TexelAt(0, 2, 1, 1), 0xFFU) << "the brightness of the layer";
    EXPECT_EQ(TakeErrors(), "");

    const auto errorsOf = [&](const std::string& list, bool mipmaps = false) {
        folder.Write("vol/x.t3d", list);
        Texture texture;
        EXPECT_FALSE(texture.Load("vol\\x.t3d", AsFile, mipmaps, false));
        return TakeErrors();
    };
    EXPECT_EQ(errorsOf(" \n", true),
              "warning: 3D textures can't be mipmapped, but was requested (no plans to implement).\n"
              "There was a problem loading 3D texture file: vol\\x.t3d\n  -no textures listed?\n" +
                  stack);
    for (const auto& [layer, what] : {std::pair{"c.bmp", "format"}, {"d.bmp", "dimensions"}})
        EXPECT_EQ(errorsOf(std::string("a.bmp ") + layer), std::string("Error loading 3d texture(vol\\x.t3d)... ") +
                                                               what + " of all files must be the same.\n  - " + layer +
                                                               " doesn't match the first layer in the list.\n");
    AddPicture("vol\\..\\secret.bmp", 4, 2, Argb32);
    const std::string failed = "A layer of 3D texture \"vol\\x.t3d\" failed to load... 3d texture load failed.\n";
    for (const char* list : {"a.bmp z.bmp", "..\\secret.bmp"})
        EXPECT_TRUE(errorsOf(list).ends_with(failed));
    platform::ImagePixels& large = AddPicture("vol\\large.bmp", 1, 1, Rgb24).image;
    large.width = large.height = 1U << 15;
    EXPECT_EQ(errorsOf("large.bmp"), failed) << "not read at all";
    scripted.script.texturesLock = false;
    EXPECT_EQ(errorsOf("a.bmp b.bmp"),
              "Failed to lock volume for some reason...\n"
              "Unable to lock 3d texture to load it... not good to have this happen obviously.\n" +
                  stack);
}

TEST_F(Textures, LoadedImageKeepsPixelsAndIndices) {
    LoadedImage image;
    AddPicture("i.bmp", 3, 2, Indexed8, 0xFF112233U);
    ASSERT_TRUE(image.Load("i.bmp"));
    EXPECT_EQ(image.channels, 1);
    EXPECT_EQ(image.pixels[5], 0xFF112233U);
    EXPECT_EQ(image.indices[5], 7);
    EXPECT_FALSE(image.Load("none.bmp"));
    EXPECT_TRUE(image.width == 0 && image.channels == 0 && !image.pixels);
    EXPECT_EQ(TakeErrors(), "Failed to load image: none.bmp\n  -call stack:\n\n");
}

TEST_F(Textures, HandlesMayOutliveTheFoundation) {
    AddPicture("a.bmp", 4, 4, Rgb24);
    std::optional<Texture> texture(std::in_place);
    ASSERT_TRUE(texture->Load("a.bmp", AsFile, false, false));
    texture->Set(0);
    foundation.Stop();
    EXPECT_EQ(scripted.liveObjects, 0) << "device objects go with the device";
    EXPECT_FALSE(texture->Lock(false));
    EXPECT_EQ(TakeErrors(), "Failed to get texture surface!? (LockTexture)\n");
    texture.reset();
    EXPECT_EQ(TakeErrors(),
              "Bad: texture being destructed, but graphics is not inited.\n"
              "  -AND it still thinks it has d3d resources.\n  -call stack:\n\nFoolish globals are likely at fault.\n");
    const std::string late = " used when graphics foundation is not initialized.\n" + stack;
    Texture early;
    EXPECT_FALSE(early.Create(3, 4, Colour, 1, false) || early.LoadCC("none.bmp"));
    EXPECT_EQ(TakeErrors(), "Bad: texture created, but graphics is not inited.\n" + stack +
                                "Error: DXG::Texture::Create" + late +
                                "Cannot create texture:\n  -dimensions must be powers of 2\n" + stack +
                                "Error: DXG::Texture::LoadCC" + late + "Failed to load image \"none.bmp\"\n" + stack);
}

TEST_F(Textures, ThreadsShareTheRegistry) {
    AddPicture("a.bmp", 4, 4, Rgb24);
    const auto work = [] {
        for (int i = 0; i < 200; ++i) {
            Texture loaded, made;
            loaded.Load("a.bmp", AsFile, false, false);
            made.Create(4, 4, Alpha, 1, false);
            const Texture copy = loaded;
        }
    };
    std::thread other(work);
    work();
    other.join();
    EXPECT_TRUE(Texture::Records().empty());
    EXPECT_EQ(scripted.liveObjects, 0);
}

// A kind that forgets to free in its destructor.
struct Careless : SharedResource<ResType> {
    Careless() { AllocateRecord(); }
    Careless(const Careless& other) : SharedResource() { CopyFrom(other); }
    void ReleaseApi() override { ++releases; }
    int releases = 0;
};

TEST(SharedResources, LastHandleFreesTheRecord) {
    support::TestFolder folder;
    {
        Careless first;
        Careless second(first);
        first.SRFree();
        EXPECT_EQ(first.releases, 0);
        EXPECT_EQ(Careless::Records().size(), 1U);
        Careless::Records().clear();
        second.SRFree();
        EXPECT_EQ(second.releases, 1);
        EXPECT_EQ(TakeErrors(), "Internal error in SharedResource, SRFree()...  -call stack:\n\n");
    }
    ResType* left = std::make_unique<Careless>()->Record();
    EXPECT_EQ(
        TakeErrors(),
        "Warning: Base (SharedResource) being destructed, but resource still allocated.  Did child not call SRFree "
        "in destructor?\n  -call stack:\n\n");
    delete2(left, "test", __LINE__);
}

}  // namespace
