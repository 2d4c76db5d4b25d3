// Table text of code page 1141, _Enc_IBM01141; ascii no. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _Enc_IBM01141[] =
    "c4aeUswIDAABCWmgzMUFZJlNZyS8uxgABWP//92fjMuE2VoIxACoIiCIC0iSggBgIB0AiZDBUAtf5/4a"
    "wANkhVMmmjIaAAAaAADQDQAAaNNP1EaeoNDgyDRoAyaYhpoMgxDCBoDRiYjQAACRSmoMjRo0ANA0DQaA"
    "GRoA0AAAekzUnuAkgJTACDSSDdmS14xCum2Ap0+ARsMmVAtDSYxfzyr+Au9xsP2vBLHZTo8tau61S4nA"
    "ypEJEJA/Vy7o1+evJJSmDOUZrgl5WPGZxIFfnlqk4BlskRgsUJJRigcljVV0Gt5pN0QC2AU1+AhwlaEx"
    "B0GEJyChKZFlgb60uaDBixFHAp2fvN9r69lyUoEyS714o7HH2FgtkUnJiRpJFliSUTBBaYJcTEEjAA/x"
    "dyRThQkMkvLsY";
