// Table text of code page 850, _BestFit_850; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_850[] =
    "c4aeUs1gHAABCWmgzMUFZJlNZ6Dv+rwADDH////7bvf7E48ImReCWIRc4XydjoQhA9gSMsGUSPP9KPv/"
    "AAjxioGoiqflEaNqYJ5JhMjQwQaMCMhpoAxNNNMIaNGIxqYhhBjU0NtU9CJo0KZGmUyGgeo0DQANNABk"
    "A0NAaAAAAAAAAEGmJiYmAmAmAAAAATAABMAAJgAAAAJoEmpQppNT9TEEabUehomhmpgjTED0AJmjQmAg"
    "wBMADSZqegAZKbGAUJSF+6pcEgtzj4d6Sw+tCsCSmSEheSFjKZoU0jd9VB+2VWxTIwMKynR25eLvsbAy"
    "XM2GDhMJD5WQNhpcy6/uq2mivn0NoFYFhYJxMuy/n5V69aBSno15igAHyT4VkwsbCCs0RMhUhFQL2nPU"
    "xlpG/OD0YFUidU/rXJlqXcPpceLtxW464yAwXAaSTpE2wkwGMAKI5CKAdsSAVk3CwNJmhWwwg/Q5XT7V"
    "40shnhfDDiMoBgQEVCEBDy6u00UI4yD7/98azRaH88LhXcHEPnT/W04TT8jCApCkMJpAqtdBIzov1HIQ"
    "V0nOoBeSTlKmoaFMqRJKvQnJVAJSJX9SGEwmFVcNklMJJBGQVgjEBjERQEIKChIpBVWCFNI99qIMx2og"
    "ALIuSnfZJYxiosUkTjNSDLq+DLEUUBYsl1W37ZgpagqzJSmxpAWqqRL6VtWFaaoQhXgvf91reR/F6SxG"
    "/QBznWIWpIKGIkDIQ6XSrsanm8+0ITQMCCgaggADREbiIP65zealg3gpkG1NN/EKyuuL1OLApsMEQIgG"
    "IBGDkqyihAtZnsC1hTZ6auQ8/ezfXtcfzZud5c7F/DxY/Y9iu5oL2JxRx6gtcURen/UrE8//MJlYDIIj"
    "0C0EFWziBhF3JFOFCQ6Dv+rw=";
