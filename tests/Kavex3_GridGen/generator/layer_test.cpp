// Tests of the layer file reader, the width chains and the layer dump.
#include "generator/layer.h"

#include <gtest/gtest.h>

#include <string>

#include "gdtest_util.h"

namespace {

FILE* text_stream(const std::string& text) {
    FILE* f = std::tmpfile();
    std::fputs(text.c_str(), f);
    std::rewind(f);
    return f;
}

class Layers : public ::testing::Test {
  protected:
    void SetUp() override { set_test_options(); }
};

TEST_F(Layers, SixListsWithChainsRatiosAndComments) {
    FILE* f = text_stream(
        "# X before: a chain of 3 cells ratio 1.5 (length 2*5) into 2 cells ratio -1.25\n"
        "2\n1 2.0 5.0 -3 1.5\n2 1.0 4.0 2 -1.25\n"
        "# Y before: none\n 0\n"
        "# Z before: one uniform layer, ratio 0 meaning 1\n1\n1 3 1 4 0.0\n"
        "1 # X after: one graded layer, widths 1, 2, 4\n1 1 7 3 2\n"
        "0\n"
        "# Z after: the last layer's negative count is taken as positive\n1\n 1 2 1 -2 1\n");
    rd_gen_layer_gds(f);
    std::fclose(f);

    // Chain: 1, 1.5, 2.25 | 2.25, 1.8, scaled to the chain's length 10 + 4.
    const LayerGrids& xb = BefBdyLyrGds[0];
    ASSERT_EQ(xb.nLayers, 2);
    EXPECT_EQ(xb.layers[0].nxtCnctd, 1);
    EXPECT_EQ(xb.layers[1].gp_ratio, -1.0 / -1.25);
    ASSERT_EQ(xb.nWidths, 5);
    const double raw[5] = {1.0, 1.5, 1.5 * 1.5, 1.5 * 1.5, 1.5 * 1.5 * (-1.0 / -1.25)};
    const double sum = raw[0] + raw[1] + raw[2] + raw[3] + raw[4];
    for (int k = 0; k < 5; ++k) EXPECT_EQ(xb.widths[k], raw[k] * (14.0 / sum)) << k;
    EXPECT_EQ(xb.widths[2], xb.widths[3]);

    EXPECT_EQ(BefBdyLyrGds[1].nLayers, 0);
    EXPECT_EQ(BefBdyLyrGds[1].nWidths, 0);
    const LayerGrids& zb = BefBdyLyrGds[2];
    ASSERT_EQ(zb.nWidths, 4);
    EXPECT_EQ(zb.layers[0].gp_ratio, 1.0);
    for (int k = 0; k < 4; ++k) EXPECT_EQ(zb.widths[k], 0.75);
    const LayerGrids& xa = AftBdyLyrGds[0];
    ASSERT_EQ(xa.nWidths, 3);
    EXPECT_EQ(xa.widths[0], 1.0);
    EXPECT_EQ(xa.widths[1], 2.0);
    EXPECT_EQ(xa.widths[2], 4.0);
    const LayerGrids& za = AftBdyLyrGds[2];
    ASSERT_EQ(za.nLayers, 1);
    EXPECT_EQ(za.layers[0].nCells, 2);
    EXPECT_EQ(za.layers[0].nxtCnctd, 0);
    EXPECT_EQ(za.widths[0], 1.0);
    EXPECT_EQ(za.widths[1], 1.0);
}

TEST_F(Layers, DumpOfOneRecord) {
    FILE* f = text_stream("2  1 1 3 -2 1  2 1 4 2 1");
    LayerGrids rec{};
    rec.layers = read_layer_spec(f, &rec);
    std::fclose(f);
    gen_connected_layers_cellwidths(&rec);
    // Chain: 1, 1 | 1, 1 over 3 + 4 = 7: four widths of 1.75.
    FILE* out = std::tmpfile();
    wr_layer_info(out, &rec, "X-Layer Before Body");
    EXPECT_EQ(read_all(out),
              "\n\nX-Layer Before Body\n\nLayer Starting Position:            0\n"
              "\nNumber of Layers: 2\n"
              "          Length      GPratio Num-Cells Nxt-Cnctd\n"
              "  1            3            1         2         T\n"
              "  2            4            1         2         F\n"
              "\nNumber of Cell Widths: 4\n"
              "      CellWidths\n"
              "  1         1.75\n  2         1.75\n  3         1.75\n  4         1.75\n");
    std::fclose(out);

    LayerGrids none{};
    out = std::tmpfile();
    wr_layer_info(out, &none, "Z-Layer After Body");
    EXPECT_EQ(read_all(out),
              "\n\nZ-Layer After Body\n\nLayer Starting Position:            0\n"
              "\nNumber of Layers: 0\n\nNumber of Cell Widths: 0\n");
    std::fclose(out);
}

TEST_F(Layers, BadListsEndTheProcess) {
    FILE* f = text_stream("0 0 -1");
    EXPECT_EXIT(rd_gen_layer_gds(f), ::testing::ExitedWithCode(1),
                "Error: number layers can not be negative");
    std::rewind(f);
    EXPECT_EXIT(rd_gen_layer_gds(text_stream("0 0 0 1\n1 2 3 4\n")), ::testing::ExitedWithCode(1),
                "Error: unexpected end-of-file or error in reading layers");
    EXPECT_EXIT(rd_gen_layer_gds(text_stream("0 0 0 0 0")), ::testing::ExitedWithCode(1),
                "Error: unexpected end-of-file or error in reading layers");
    std::fclose(f);
}

}  // namespace
