// Vertex and index buffers, indexed drawing and immediate mode on the scripted device.

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "graphics/device/DXGImmediate.h"
#include "graphics/device/DXGVert.h"
#include "support/ScriptedFoundation.h"

namespace {

using support::TakeErrors;

using DXG::IndexBuffer;
using DXG::VertexBuffer;
using DXG::VertexFormat;
using platform::DeviceResult;

const VertexFormat litFormat{{2, 0}, {2, 1}, {1, 3}};
const VertexFormat colouredFormat{{2, 0}, {2, 1}, {4, 2}};
const std::string stack = "  -call stack:\n\n";
const std::string caller = "  -call made from:\n\n";

struct Buffers : testing::Test {
    support::TestFolder folder;
    support::ScriptedFoundation foundation;
    platform::ScriptedGraphics& scripted = foundation.scripted;
    Buffers() {
        DXG::BeginFrame(0.01F, false, true);
        scripted.ForgetCalls();
    }
    ~Buffers() override {
        foundation.Stop();
        EXPECT_TRUE(scripted.faults.empty()) << scripted.faults.front();
        EXPECT_EQ(scripted.liveObjects, 0);
    }
};

TEST_F(Buffers, FormatsBecomeDeclarationsOnce) {
    EXPECT_EQ(DXG::StrideOf(litFormat), 32U);
    VertexBuffer first, second;
    ASSERT_TRUE(first.Create(3, colouredFormat, 28, false, true) && second.Create(3, colouredFormat, 28, true, false));
    EXPECT_EQ(scripted.CallsNamed("CreateVertexLayout").size(), 1U);
    EXPECT_EQ(scripted.CallsNamed("CreateVertexBuffer"),
              (std::vector<std::string>{"CreateVertexBuffer 84 0 1", "CreateVertexBuffer 84 1 0"}));
    (void)first.Lock(false);
    first.Set();
    const platform::ScriptedDraw& current = scripted.device->current;
    ASSERT_EQ(current.layout.size(), 3U);
    EXPECT_EQ(current.layout[2].offset, 24U);
    EXPECT_EQ(current.layout[2].type, platform::VertexType::PackedColour);
    EXPECT_EQ(current.layout[2].use, platform::VertexUse::Colour);
    EXPECT_EQ(current.stride, 28U);
    foundation.Stop();
    ASSERT_TRUE(foundation.Start() && DXG::DeclarationOf(colouredFormat));
    EXPECT_EQ(scripted.CallsNamed("CreateVertexLayout").size(), 2U) << "the next device needs its own";
}

TEST_F(Buffers, CreationFailuresAreReported) {
    VertexBuffer vertices;
    IndexBuffer indices;
    EXPECT_FALSE(vertices.Create(3, {{2, 0}, {7, 1}}, 24, false, false));
    EXPECT_FALSE(vertices.Create(3, {{2, 4}}, 12, false, false));
    scripted.script.makesLayouts = false;
    EXPECT_FALSE(vertices.Create(3, litFormat, 32, false, false));
    scripted.script.makesLayouts = true;
    for (const DeviceResult result :
         {DeviceResult::OutOfVideoMemory, DeviceResult::OutOfMemory, DeviceResult::Failed}) {
        scripted.script.createVertexBuffer = {result};
        EXPECT_FALSE(vertices.Create(3, litFormat, 32, false, false));
    }
    scripted.script.createIndexBuffer = {DeviceResult::Failed};
    EXPECT_FALSE(indices.Create(3, false, false));
    EXPECT_FALSE(vertices.IsCreated() || indices.IsCreated());
    EXPECT_EQ(TakeErrors(), "Bad type found in vertex format.\n" + stack + "Bad use found in vertex format.\n" + stack +
                                "Failed to create d3d vertex declaration." + stack +
                                "Failed to create vertex buffer (out of video memory)\n" + caller +
                                "Failed to create vertex buffer (not enough system memory)\n" + caller +
                                "Failed to create vertex buffer\n" + caller + "Failed to create index buffer.\n" +
                                stack);
}

TEST_F(Buffers, UseWithoutContentsIsReported) {
    VertexBuffer vertices;
    IndexBuffer indices;
    DXG::DrawIndexed(1);
    EXPECT_FALSE(vertices.Lock(true));
    EXPECT_FALSE(indices.Lock());
    vertices.Set();
    indices.Set();
    ASSERT_TRUE(vertices.Create(3, litFormat, 32, false, false));
    ASSERT_TRUE(indices.Create(3, false, false));
    vertices.Set();
    DXG::DrawIndexed(1);
    indices.Set();
    DXG::DrawIndexed(1);
    EXPECT_EQ(scripted.draws.size(), 1U) << "never locked, but drawn";
    EXPECT_EQ(TakeErrors(),
              "Bad: Attempt to render indexed primitives with 'No vertex buffer set''No index buffer set'\n" + stack +
                  "Warning: attempt to lock a non-allocated vertex buffer.\n" + caller +
                  "Warning: attempt to lock a non-allocated index buffer.\n" + caller +
                  "Warning: attempt to set a non-allocated vertex buffer as a stream source.\n" + stack +
                  "Warning: attempt to set a non-allocated index buffer\n" + stack +
                  "Warning: Vertex buffer set, but has never been locked before.  Data in it is invalid.\n" + stack +
                  "Bad: Attempt to render indexed primitives with 'No index buffer set'\n" + stack +
                  "Warning: Index buffer set, but has never been locked before.  Data in it is invalid.\n" + stack);
}

TEST_F(Buffers, LocksFillAndDrawsNameTheirRange) {
    VertexBuffer vertices;
    IndexBuffer indices;
    ASSERT_TRUE(vertices.Create(6, litFormat, 32, true, false));
    ASSERT_TRUE(indices.Create(70000, false, true));
    EXPECT_EQ(indices.Count(), 70000U - 65536U) << "read as 16 bits";
    {
        const DXG::BufferLock lock = vertices.Lock(true);
        static_cast<float*>(lock.Data())[8] = 2.5F;
        DXG::BufferLock indexLock = indices.Lock();
        DXG::BufferLock moved = std::move(indexLock);
        moved.Unlock();
    }
    vertices.Set();
    indices.Set();
    DXG::DrawIndexed(3);
    DXG::DrawTriangles(3, 9);
    DXG::DrawTriangles(5, 1);
    ASSERT_EQ(scripted.draws.size(), 2U) << "nothing past the end";
    EXPECT_EQ(scripted.draws[0].FloatAt(1, 0), 2.5F);
    EXPECT_TRUE(scripted.Called("DrawIndexed Triangles 6 0 3"));
    EXPECT_TRUE(scripted.Called("Draw Triangles 3 1"));
    vertices.Release();
    EXPECT_EQ(scripted.device->vertexBuffer, nullptr) << "what is bound goes with its last handle";
    for (const bool dynamic : {false, true}) {
        ASSERT_TRUE(vertices.Create(6, litFormat, 32, dynamic, false));
        EXPECT_TRUE(vertices.Lock(true));
        const auto* object = dynamic_cast<platform::ScriptedBuffer*>(vertices.Record()->api.buffer.get());
        EXPECT_EQ(object->discards, dynamic ? 1 : 0);
        EXPECT_EQ(object->openLocks, 0);
    }
    EXPECT_EQ(TakeErrors(), "");
}

TEST_F(Buffers, HandlesMayOutliveTheFoundation) {
    std::optional<VertexBuffer> vertices(std::in_place);
    std::optional<IndexBuffer> indices(std::in_place);
    ASSERT_TRUE(vertices->Create(3, litFormat, 32, false, false) && indices->Create(3, false, false));
    foundation.Stop();
    EXPECT_EQ(scripted.liveObjects, 0);
    vertices.reset();
    EXPECT_EQ(TakeErrors(),
              "Bad: vertex buffer being destructed, but graphics is not inited.\n"
              "  -AND it still thinks it has d3d resources.\n" +
                  stack + "Foolish globals are likely at fault.\n");
    indices.reset();
    EXPECT_TRUE(TakeErrors().starts_with("Bad: index buffer being destructed, but graphics is not inited.\n"));
    VertexBuffer late;
    EXPECT_FALSE(late.Create(3, litFormat, 32, false, false));
    EXPECT_EQ(TakeErrors(),
              "Error: DXG::VertexBuffer::Create used when graphics foundation is not initialized.\n" + caller);
}

TEST_F(Buffers, ImmediateModeCountsPrimitives) {
    struct Row {
        unsigned type;
        int vertices;
        std::vector<std::string> drawn;
    };
    const Row rows[] = {{0, 5, {"DrawFromMemory Points 5 44"}},
                        {1, 5, {"DrawFromMemory Lines 2 44"}},
                        {2, 7, {"DrawFromMemory Triangles 2 44"}},
                        {3, 5, {"DrawFromMemory TriangleFan 3 44"}},
                        {3, 2, {}},
                        {1, 1, {}}};
    for (const Row& row : rows) {
        scripted.ForgetCalls();
        DXG::IMBegin(row.type);
        for (int i = 0; i < row.vertices; ++i)
            DXG::IMPosition(static_cast<float>(i), 1.0F);
        DXG::IMEnd();
        EXPECT_EQ(scripted.CallsNamed("DrawFromMemory"), row.drawn);
    }
}

TEST_F(Buffers, ImmediateVerticesCarryTheirAttributes) {
    DXG::IMBegin(DXG::primitiveLines);
    DXG::IMPosition(1, 2, 3);
    DXG::IMNormal(4, 5, 6);
    DXG::IMTexCoord(7, 8);
    DXG::IMTexCoord2(9, 10);
    DXG::IMColor(0.0F, 0.5F, 1.0F, 0.25F);
    DXG::IMPosition(11, 12);
    DXG::IMEnd();
    ASSERT_EQ(scripted.draws.size(), 1U);
    const platform::ScriptedDraw& draw = scripted.draws[0];
    EXPECT_EQ(draw.stride, 44U);
    EXPECT_EQ(draw.layout.size(), 4U) << "the second texture coordinates are not read";
    const float first[] = {1, 2, 3, 0, 0, 0, NAN, 0, 0, 0, 0};
    const float second[] = {11, 12, 0, 4, 5, 6, NAN, 7, 8, 9, 10};
    for (unsigned i = 0; i < 11; ++i) {
        if (i == 6) continue;
        EXPECT_EQ(draw.FloatAt(0, 4 * i), first[i]) << i;
        EXPECT_EQ(draw.FloatAt(1, 4 * i), second[i]) << i;
    }
    EXPECT_EQ(draw.WordAt(0, 24), 0xFFFFFFFFU);
    EXPECT_EQ(draw.WordAt(1, 24), 0x3F007FFFU);
    EXPECT_EQ(TakeErrors(), "");
}

TEST_F(Buffers, ImmediateModeReportsMisuse) {
    DXG::IMEnd();
    DXG::IMBegin(4);
    DXG::IMPosition(1, 2, 3);
    DXG::IMBegin(DXG::primitivePoints);
    DXG::IMBegin(DXG::primitiveLines);
    DXG::IMColor(1.5F, 0.0F, -0.5F);
    DXG::IMPosition(1, 2);
    DXG::IMPosition(1, 2, 3, 4);
    DXG::IMColor(NAN, INFINITY, 1.0F);
    DXG::IMEnd();
    ASSERT_EQ(scripted.draws.size(), 1U);
    EXPECT_EQ(scripted.draws[0].primitiveCount, 1U);
    EXPECT_EQ(scripted.draws[0].WordAt(0, 24), 0xFF7E0081U) << "382 and -127, low 8 bits";
    EXPECT_TRUE(TakeErrors().starts_with(
        "IMEnd used, but am not within a begin/end block.\nbad primType passed ts IMBegin...\n" + stack +
        "IMBegin used... but already inside a begin/end block.\n" + stack + "Invalid float range for a color: 1.5\n" +
        stack + "Invalid float range for a color: -0.5\n" + stack +
        "Warning: IMPosition4 not correctly implemented correctly for D3D yet.\nInvalid float range for a color: "))
        << TakeErrors();
}

}  // namespace
