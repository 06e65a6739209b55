// Tests of the layer file reader's failures.
#include "generator/layer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "gdtest_util.h"

namespace {

using Layers = GenTest;

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
