// Which table of best fits each code page has; read through EncodingRow::bestFit.
#ifndef ENCODING_CODECS_BEST_FIT_LIST_H_
#define ENCODING_CODECS_BEST_FIT_LIST_H_

#include "encoding/tables/texts/table_texts.h"

namespace encoding_rows {

struct BestFit {
  int number;  // code page
  const char* text;
};

// EBCDIC with shifts has those of the Windows code page of its language, as far as it holds what
// they write. Nobody published any for 55000 and 200954, whose tools/best_fit_pairs made, nor for
// code pages of Macs, which, but for the Japanese and the Arabic one, have none.
inline constexpr BestFit kBestFits[] = {
    {37, _BestFit_37},         {437, _BestFit_437},     {500, _BestFit_37},
    {708, _BestFit_708},       {720, _BestFit_720},     {737, _BestFit_737},
    {775, _BestFit_775},       {819, _BestFit_20127},   {850, _BestFit_850},
    {852, _BestFit_852},       {855, _BestFit_855},     {857, _BestFit_857},
    {858, _BestFit_858},       {860, _BestFit_860},     {861, _BestFit_861},
    {862, _BestFit_862},       {863, _BestFit_863},     {864, _BestFit_864},
    {865, _BestFit_865},       {866, _BestFit_866},     {869, _BestFit_869},
    {870, _BestFit_870},       {874, _BestFit_874},     {875, _BestFit_875},
    {932, _BestFit_932},       {936, _BestFit_936},     {949, _BestFit_949},
    {950, _BestFit_950},       {1026, _BestFit_37},     {1047, _BestFit_1047},
    {1140, _BestFit_37},       {1141, _BestFit_37},     {1142, _BestFit_37},
    {1143, _BestFit_37},       {1144, _BestFit_37},     {1145, _BestFit_37},
    {1146, _BestFit_37},       {1147, _BestFit_37},     {1148, _BestFit_37},
    {1149, _BestFit_1149},     {1250, _BestFit_1250},   {1251, _BestFit_1251},
    {1252, _BestFit_1252},     {1253, _BestFit_1253},   {1254, _BestFit_1254},
    {1255, _BestFit_1255},     {1256, _BestFit_1256},   {1257, _BestFit_1257},
    {1258, _BestFit_1257},     {1361, _BestFit_1361},   {10001, _BestFit_932},
    {10004, _BestFit_708},     {20105, _BestFit_20105}, {20106, _BestFit_20106},
    {20107, _BestFit_20107},   {20108, _BestFit_20108}, {20127, _BestFit_20127},
    {20261, _BestFit_20261},   {20269, _BestFit_20269}, {20273, _BestFit_37},
    {20277, _BestFit_37},      {20278, _BestFit_37},    {20280, _BestFit_37},
    {20284, _BestFit_37},      {20285, _BestFit_37},    {20290, _BestFit_870},
    {20297, _BestFit_37},      {20420, _BestFit_20420}, {20423, _BestFit_20423},
    {20424, _BestFit_1257},    {20838, _BestFit_1257},  {20866, _BestFit_20866},
    {20871, _BestFit_1149},    {20880, _BestFit_1257},  {20905, _BestFit_1257},
    {20924, _BestFit_20924},   {21025, _BestFit_1257},  {21866, _BestFit_20866},
    {28591, _BestFit_28591},   {28592, _BestFit_28592}, {28593, _BestFit_28593},
    {28594, _BestFit_28594},   {28595, _BestFit_28595}, {28596, _BestFit_28596},
    {28597, _BestFit_28597},   {28598, _BestFit_28598}, {28599, _BestFit_28599},
    {28603, _BestFit_28603},   {28605, _BestFit_28605}, {38598, _BestFit_28598},
    {51932, _BestFit_932},     {51936, _BestFit_936},   {51949, _BestFit_949},
    {52936, _BestFit_936},     {300, _BestFit_932},     {930, _BestFit_932},
    {931, _BestFit_932},       {933, _BestFit_949},     {935, _BestFit_936},
    {937, _BestFit_950},       {939, _BestFit_932},     {1364, _BestFit_949},
    {1371, _BestFit_950},      {1388, _BestFit_936},    {1390, _BestFit_932},
    {1399, _BestFit_932},      {16684, _BestFit_932},   {55000, _BestFit_55000},
    {200954, _BestFit_200954},
};

}  // namespace encoding_rows

#endif  // ENCODING_CODECS_BEST_FIT_LIST_H_
