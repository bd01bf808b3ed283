#include "export/CsvTables.h"

#include "support/SmallModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::WrittenBytes;

TEST(CsvTables, HaveNineDigitsAndLinesThatEndWithCrLf)
{
    ModelStore model;
    model.NodeCoordinates = {{0.0, -1.5, 1e7}, {1.0 / 3.0, 2e-300, 123456789012.0}};
    model.GlobalDisplacement = {1, 2, 3, 4, 5, 6, -0.1, 0.0, 1e-5, 0, 0, 0};
    EXPECT_EQ(WrittenBytes(CsvNodesFileName, [&] { WriteCsvNodes(model, CsvNodesFileName); }),
              "node,x,y,z,dx,dy,dz,rx,ry,rz\r\n"
              "0,0,-1.5,10000000,1,2,3,4,5,6\r\n"
              "1,0.333333333,2e-300,1.23456789e+11,-0.1,0,1e-05,0,0,0\r\n");
}

TEST(CsvTables, OfAModelWithoutTheThingAreTheirHeader)
{
    const ModelStore model;
    EXPECT_EQ(WrittenBytes("f", [&] { WriteCsvTris(model, "f"); }),
              "element,node,face,SX,SY,SZ,TXY,TXZ,TYZ,SE,own_SX,own_SY,own_SZ,own_TXY,own_TXZ,own_TYZ,own_SE\r\n");
    EXPECT_EQ(WrittenBytes("f", [&] { WriteCsvBeamNodes(model, "f"); }),
              "beam,section_node,x,y,z,dx,dy,dz,rx,ry,rz\r\n");
    EXPECT_EQ(WrittenBytes("f", [&] { WriteCsvReactions({}, "f"); }), "node,direction,kind,reaction\r\n");
}

TEST(CsvTables, TellSupportsFromHolds)
{
    EXPECT_EQ(WrittenBytes("f",
                           [&] {
                               WriteCsvReactions({{7, DZ, -2.5, false}, {12, RX, 1e-9, true}}, "f");
                           }),
              "node,direction,kind,reaction\r\n"
              "7,dz,support,-2.5\r\n"
              "12,rx,hold,1e-09\r\n");
}

TEST(CsvTables, HaveBothFacesAveragedAndOwn)
{
    ModelStore model;
    model.TriConnectivity = {{4, 5, 6}};
    model.TriElements.resize(1);
    TriShellElement& tri = model.TriElements[0];
    tri.averagedPositiveFace[0][SX] = 3.0;
    tri.positiveFace[0][SY] = -4.0;
    tri.averagedNegativeFace[2][SZ] = 5.0;
    tri.negativeFace[2][SX] = 6.0;
    const std::string text = WrittenBytes("f", [&] { WriteCsvTris(model, "f"); });
    EXPECT_EQ(text.substr(text.find("\r\n")), "\r\n"
                                              "0,4,positive,3,0,0,0,0,0,3,0,-4,0,0,0,0,4\r\n"
                                              "0,4,negative,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
                                              "0,5,positive,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
                                              "0,5,negative,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
                                              "0,6,positive,0,0,0,0,0,0,0,0,0,0,0,0,0,0\r\n"
                                              "0,6,negative,0,0,5,0,0,0,5,6,0,0,0,0,0,6\r\n");
}

} // namespace
} // namespace tarnvexo
