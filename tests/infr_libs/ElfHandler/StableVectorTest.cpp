#include "infr_libs/ElfHandler/StableVector.h"

#include <gtest/gtest.h>

TEST(StableVector, KeepsElementsInTheirPlacesAsItGrows) {
    StableVector<int> numbers;
    const int* first = &numbers.emplace_back(0);
    for (int i = 1; i < 5000; ++i)
        numbers.emplace_back(i);
    EXPECT_EQ(first, &numbers[0]);
    EXPECT_EQ(numbers.size(), 5000U);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(numbers[static_cast<std::size_t>(i)], i);
}

TEST(StableVector, FindsTheIndexOfAnElementByItsAddress) {
    StableVector<int> numbers;
    for (int i = 0; i < 5000; ++i)
        numbers.emplace_back(i);
    for (const std::size_t i : {0U, 1023U, 1024U, 4999U})
        EXPECT_EQ(numbers.indexOf(&numbers[i]), i);
    const int stranger = 0;
    EXPECT_EQ(numbers.indexOf(&stranger), std::nullopt);
    EXPECT_EQ(numbers.indexOf(nullptr), std::nullopt);
}
