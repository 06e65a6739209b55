// Tests of the layer file reader, the width chains and the layer dump.
#include "generator/layer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "gdtest_util.h"

namespace {

using Layers = GenTest;

TEST_F(Layers, DumpOfAConnectedChain) {
    char text[] = "2  1 1 3 -2 1  2 1 4 2 1";
    FILE* f = fmemopen(text, sizeof text - 1, "r");
    LayerGrids rec{};
    rec.layers = read_layer_spec(f, &rec);
    std::fclose(f);
    gen_connected_layers_cellwidths(&rec);
    // Chain: 1, 1 | 1, 1 over 3 + 4 = 7: four widths of 1.75.
    EXPECT_EQ(stream_text([&](FILE* out) { wr_layer_info(out, &rec, "X-Layer Before Body"); }),
              "\n\nX-Layer Before Body\n\nLayer Starting Position:            0\n"
              "\nNumber of Layers: 2\n"
              "          Length      GPratio Num-Cells Nxt-Cnctd\n"
              "  1            3            1         2         T\n"
              "  2            4            1         2         F\n"
              "\nNumber of Cell Widths: 4\n"
              "      CellWidths\n"
              "  1         1.75\n  2         1.75\n  3         1.75\n  4         1.75\n");
}

TEST_F(Layers, BadListsEndTheProcess) {
    for (const auto& [text, message] :
         {std::pair{"0 0 -1", "number layers can not be negative"},
          {"0 0 0 1\n1 2 3 4\n", "unexpected end-of-file or error in reading layers"},
          {"0 0 0 0 0", "unexpected end-of-file or error in reading layers"}})
        EXPECT_EXIT(rd_gen_layer_gds(fmemopen(const_cast<char*>(text), std::strlen(text), "r")),
                    ::testing::ExitedWithCode(1), std::string("Error: ") + message)
            << text;
}

}  // namespace
