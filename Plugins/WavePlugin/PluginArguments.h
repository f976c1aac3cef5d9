#pragma once

#include <list>
#include <string>

// Splits the argument text of an instance into words and appends them to the list. Words are separated by
// white space; quotes ' keep white space in a word. An opening quote continues the word that it stands
// behind, a closing quote always ends the word, and an empty word is no word: wanted, though no shell does
// the same. A quote that stays open ends with the text. A null text holds no word.
void strToStrList(const char* text, std::list<std::string>* list);
