#include "support/Cases.h"

namespace svgtool::test {

TEST_P(EmfBody, IsExact)
{
    const Conversion conversion = convert(GetParam().emf.build());
    EXPECT_EQ(conversion.result, 1);
    EXPECT_EQ(conversion.body(), GetParam().body);
}

} // namespace svgtool::test
