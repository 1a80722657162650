#include "scene/pages/prose.h"

#include <numeric>
#include <vector>

namespace doccam::virtualcam {

namespace {

const char* const kSentences[] = {
    "The morning train was late again, and the platform slowly filled with people.",
    "She opened the window to let the smell of fresh bread into the kitchen.",
    "Our office will remain closed between the first and the third week of August.",
    "Please sign both copies of this letter and return one of them to us.",
    "The river had risen during the night and covered the lower part of the garden.",
    "He found the old map in a drawer, under a pile of unpaid bills.",
    "Every member of the club receives a copy of the annual report in March.",
    "The children built a small house of branches behind the school.",
    "Nobody could remember when the bridge had last been painted.",
    "A good photograph needs patience, even light and a steady hand.",
    "The museum has bought three paintings from a private collection.",
    "Water the young plants twice a day until the first leaves appear.",
    "Two of the machines were moved to the new workshop last summer.",
    "The letter arrived on a cold Tuesday, just before the holidays.",
    "Our guests usually take breakfast on the terrace above the harbour.",
    "The price includes delivery, but not the cost of the packaging.",
    "They walked along the beach until the lights of the town disappeared.",
    "The committee agreed to meet again before the end of the month.",
    "A short walk leads from the station to the market square.",
    "The teacher asked everyone to write about a journey they had made.",
    "In spring the hills turn green and the sheep return to the valley.",
    "The engine started at once, although it had been standing for years.",
    "You will find the instructions on the inside of the cover.",
    "The library lends books, films and musical instruments to its readers.",
    "His grandfather had been a carpenter and his uncle a baker.",
    "The weather forecast promises rain for the whole weekend.",
    "Keep this document in a safe place, since it cannot be replaced.",
    "The concert begins at eight, and the doors open an hour earlier.",
    "Several houses in the street are older than the church itself.",
    "She had never seen so many different kinds of apples on one table.",
    "The company was founded by two brothers in a small garage.",
    "Turn left after the second bridge and follow the road uphill.",
    "The new rules apply to every order that is placed after Monday.",
    "A strong wind had broken several branches of the old oak tree.",
    "The doctor recommended more sleep and less coffee in the evening.",
    "Most of the letters in this collection were written during the war.",
    "The soup tastes best when it has been left to rest overnight.",
    "Their ship reached the island after eleven days of calm weather.",
    "Please check the amounts below and inform us about any mistake.",
    "The students measured the temperature of the lake every hour.",
    "An honest answer is often shorter than a polite one.",
    "The farmer sold his horses and bought a second tractor.",
    "All rooms have a view of the mountains and a private bath.",
    "The last page of the book had been torn out by somebody.",
    "We would like to thank everyone who helped to prepare the exhibition.",
    "The road was closed because a truck had lost its load.",
    "Fresh fish is sold in the hall next to the lighthouse.",
    "The carpenter needed only one afternoon to repair the stairs.",
    "It is cheaper to buy the tickets some weeks in advance.",
    "The orchestra played two pieces by a young composer from the north.",
    "Many visitors come only to see the clock above the gate.",
    "The results of the second test were better than expected.",
    "He wrote down the number of the car and called the police.",
    "The garden is open to the public from April until October.",
    "A careful reader will notice that the story has no ending.",
    "The shop on the corner sells paper, pencils and coloured ink.",
    "Nothing in the contract prevents the owner from renting the house.",
    "The snow stayed on the roofs until the middle of February.",
    "Both parties may end this agreement with a notice of three months.",
    "The captain ordered his crew to lower the boats into the water.",
    "Her answer surprised the audience more than the question itself.",
    "The bakery delivers bread and cakes to every village in the county.",
    "Most accidents happen within a short distance from home.",
    "The paint must dry for a whole day before the second coat."};
constexpr int kCount = static_cast<int>(std::size(kSentences));

const char* const kHeadings[] = {"Report of the Spring Meeting",
                                 "The House by the River",
                                 "Notes for New Members",
                                 "Letter from the North",
                                 "A Journey in Winter",
                                 "Terms of Delivery",
                                 "Market Square and Harbour",
                                 "Instructions for Visitors",
                                 "The Old Workshop",
                                 "Summer Programme"};

} // namespace

std::string prose(int sentences, cv::RNG& random) {
    std::vector<int> order(kCount);
    std::iota(order.begin(), order.end(), 0);
    for (int i = kCount - 1; i > 0; --i) {
        std::swap(order[static_cast<std::size_t>(i)],
                  order[static_cast<std::size_t>(random.uniform(0, i + 1))]);
    }
    std::string text;
    for (int i = 0; i < sentences; ++i) {
        text += kSentences[order[static_cast<std::size_t>(i % kCount)]];
        text += ' ';
    }
    return text;
}

std::string heading(cv::RNG& random) {
    return kHeadings[random.uniform(0, static_cast<int>(std::size(kHeadings)))];
}

} // namespace doccam::virtualcam
