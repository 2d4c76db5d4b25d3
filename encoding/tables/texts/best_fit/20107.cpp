// Table text of code page 20107, _BestFit_20107; best fit. Packed by table_text; see docs/code-pages.md.
#include "encoding/tables/texts/table_texts.h"

const char _BestFit_20107[] =
    "c4aeUs3AFAABCWmgzMUFZJlNZXphUbQACUf/3//6DhV+AAEMQAABQAQAgQDAAAAIEAGDHgAr9UCE7sAF"
    "ZIIammgiG0hoADQ0AAAAMg5gE0wCZDAAEwTAAABJqSappPU9TahpoeUYR6nqNlNAAaaenqBIUMBbDEaZ"
    "DM6d7XbJIEsZPDgYGUYGdIceBmz0eISQgXKK8tihUbNXo125fTogAAbQUKQ0OIPktDAkjMAmEYjKJgeD"
    "U3lmaiaTiOku60LBRJSoPUEvx1+7HkBCAMM6M7mVjlCTM4xDHJBqvxZKNT4/BQQKYSm6WSauCli4LdL6"
    "LYLb4V3ZYAsRgCyEAWRjFkigkIskgqLAgIgCgsikikWQVEJ9WSQK2VAp21Umxn4Z+UhIfPdj/tv6/ppe"
    "7tx3bi+NFixSOWp1IWcGhAuhigWwqBkrR6NhIHuX5AJYKks0ME35/+LuSKcKEgvTCo2g=";
