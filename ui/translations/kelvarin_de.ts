<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="de_DE" sourcelanguage="en">
<context>
    <name>CellFilter</name>
    <message>
        <source>&apos;%1&apos; is no number. Write a number, a comparison such as &gt; 5, a range such as 1..5, null or nan.</source>
        <translation>„%1“ ist keine Zahl. Schreiben Sie eine Zahl, einen Vergleich wie &gt; 5, einen Bereich wie 1..5, null oder nan.</translation>
    </message>
</context>
<context>
    <name>Debugger</name>
    <message>
        <source>Row %1, stopped at a breakpoint.</source>
        <translation>Zeile %1, angehalten am Haltepunkt.</translation>
    </message>
    <message>
        <source>Row %1, stopped: the condition of the breakpoint cannot be evaluated.</source>
        <translation>Zeile %1, angehalten: Die Bedingung des Haltepunkts lässt sich nicht auswerten.</translation>
    </message>
    <message>
        <source>Row %1, the one that was asked for.</source>
        <translation>Zeile %1, wie verlangt.</translation>
    </message>
    <message>
        <source>Row %1, stopped at an error.</source>
        <translation>Zeile %1, angehalten an einem Fehler.</translation>
    </message>
    <message>
        <source>Row %1, stopped at a null or NaN result.</source>
        <translation>Zeile %1, angehalten an einem Ergebnis null oder NaN.</translation>
    </message>
    <message>
        <source>Row %1: its error ended the run.</source>
        <translation>Zeile %1: Ihr Fehler hat den Lauf beendet.</translation>
    </message>
    <message>
        <source>Row %1.</source>
        <translation>Zeile %1.</translation>
    </message>
    <message>
        <source>step</source>
        <translation>Schritt</translation>
    </message>
    <message>
        <source>breakpoint</source>
        <translation>Haltepunkt</translation>
    </message>
    <message>
        <source>condition failed</source>
        <translation>Bedingung fehlerhaft</translation>
    </message>
    <message>
        <source>run to row</source>
        <translation>Zeile erreicht</translation>
    </message>
    <message>
        <source>error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>null result</source>
        <translation>Ergebnis null</translation>
    </message>
    <message>
        <source>end by error</source>
        <translation>Ende durch Fehler</translation>
    </message>
    <message>
        <source>The newest row is %1.</source>
        <translation>Die neueste Zeile ist %1.</translation>
    </message>
    <message>
        <source>In sampling, rows are counted and not evaluated.</source>
        <translation>Bei einer Stichprobe werden Zeilen gezählt und nicht ausgewertet.</translation>
    </message>
    <message>
        <source>Running; the first row has not come yet.</source>
        <translation>Läuft; die erste Zeile ist noch nicht gekommen.</translation>
    </message>
    <message>
        <source>Running: %1 rows, %2 a second.</source>
        <translation>Läuft: %1 Zeilen, %2 in der Sekunde.</translation>
    </message>
    <message>
        <source>The run has ended without a row. Where it failed, the log says why.</source>
        <translation>Der Lauf ist ohne eine Zeile beendet. Falls er gescheitert ist, steht der Grund im Protokoll.</translation>
    </message>
    <message>
        <source>The run has ended after %1 rows.</source>
        <translation>Der Lauf ist nach %1 Zeilen beendet.</translation>
    </message>
</context>
<context>
    <name>ExpressionStep</name>
    <message>
        <source>Insert %1</source>
        <translation>%1 einfügen</translation>
    </message>
</context>
<context>
    <name>Help</name>
    <message>
        <source>All Graph-Global-Parameters are also available to use.</source>
        <translation>Alle globalen Parameter des Graphen stehen ebenfalls zur Verfügung.</translation>
    </message>
    <message>
        <source>On Numbers</source>
        <translation>Zahlen</translation>
    </message>
    <message>
        <source>absolute value of x (x&lt;0?-x:x)</source>
        <translation>Betrag von x (x&lt;0?-x:x)</translation>
    </message>
    <message>
        <source>A null in any argument gives null.</source>
        <translation>NULL in einem Argument ergibt NULL.</translation>
    </message>
    <message>
        <source>returns the largest integer lower or equal to x</source>
        <translation>größte ganze Zahl, die nicht über x liegt</translation>
    </message>
    <message>
        <source>returns the largest multiple of y lower or equal to x</source>
        <translation>größtes Vielfaches von y, das nicht über x liegt</translation>
    </message>
    <message>
        <source>A negative y gives the smallest multiple that is not below x; y = 0 gives a NaN.</source>
        <translation>Ein negatives y ergibt das kleinste Vielfache, das nicht unter x liegt; y = 0 ergibt NaN.</translation>
    </message>
    <message>
        <source>returns the smallest integer greater or equal to x</source>
        <translation>kleinste ganze Zahl, die nicht unter x liegt</translation>
    </message>
    <message>
        <source>returns the closest integer to x</source>
        <translation>die zu x nächste ganze Zahl</translation>
    </message>
    <message>
        <source>A half goes away from zero.</source>
        <translation>Eine Hälfte wird von der Null weg gerundet.</translation>
    </message>
    <message>
        <source>rounds x to d digits after the decimal point</source>
        <translation>rundet x auf d Stellen nach dem Komma</translation>
    </message>
    <message>
        <source>A negative d rounds to tens, hundreds and so on. More than 16 digits leave x as it is.</source>
        <translation>Ein negatives d rundet auf Zehner, Hunderter und so weiter. Mehr als 16 Stellen lassen x, wie es ist.</translation>
    </message>
    <message>
        <source>rounds x away from zero, to d digits after the decimal point</source>
        <translation>rundet x von der Null weg auf d Stellen nach dem Komma</translation>
    </message>
    <message>
        <source>rounds x towards zero, to d digits after the decimal point</source>
        <translation>rundet x zur Null hin auf d Stellen nach dem Komma</translation>
    </message>
    <message>
        <source>uniform random number inside [0 x[</source>
        <translation>gleichverteilte Zufallszahl in [0 x[</translation>
    </message>
    <message>
        <source>Every row draws anew. The seed is the action&apos;s setting &apos;seed&apos;; -1 takes it from the clock.</source>
        <translation>Jede Zeile zieht neu. Der Startwert ist die Einstellung &apos;seed&apos; der Aktion; -1 nimmt ihn von der Uhr.</translation>
    </message>
    <message>
        <source>uniform random integer number inside [0 x[</source>
        <translation>gleichverteilte ganze Zufallszahl in [0 x[</translation>
    </message>
    <message>
        <source>uniform random number inside [0 1[</source>
        <translation>gleichverteilte Zufallszahl in [0 1[</translation>
    </message>
    <message>
        <source>sine of x (in radians)</source>
        <translation>Sinus von x (im Bogenmaß)</translation>
    </message>
    <message>
        <source>cosine of x (in radians)</source>
        <translation>Kosinus von x (im Bogenmaß)</translation>
    </message>
    <message>
        <source>tangent of x (in radians)</source>
        <translation>Tangens von x (im Bogenmaß)</translation>
    </message>
    <message>
        <source>arc sine of x, an angle in radians</source>
        <translation>Arkussinus von x, ein Winkel im Bogenmaß</translation>
    </message>
    <message>
        <source>arc cosine of x, an angle in radians</source>
        <translation>Arkuskosinus von x, ein Winkel im Bogenmaß</translation>
    </message>
    <message>
        <source>arc tangent of x, an angle in radians</source>
        <translation>Arkustangens von x, ein Winkel im Bogenmaß</translation>
    </message>
    <message>
        <source>angle between the x axis and the point (x,y), in radians</source>
        <translation>Winkel zwischen der x-Achse und dem Punkt (x,y), im Bogenmaß</translation>
    </message>
    <message>
        <source>The String Parser declares it with one argument and so refuses two; of numbers alone, the other two parsers compute it.</source>
        <translation>Der String Parser kennt sie mit einem Argument und weist zwei zurück; aus Zahlen allein berechnen sie die beiden anderen.</translation>
    </message>
    <message>
        <source>hyperbolic sine</source>
        <translation>Sinus hyperbolicus</translation>
    </message>
    <message>
        <source>It is the hyperbolic cosine.</source>
        <translation>Es ist der Kosinus hyperbolicus.</translation>
    </message>
    <message>
        <source>hyperbolic cosine</source>
        <translation>Kosinus hyperbolicus</translation>
    </message>
    <message>
        <source>It is the hyperbolic sine.</source>
        <translation>Es ist der Sinus hyperbolicus.</translation>
    </message>
    <message>
        <source>hyperbolic tangent</source>
        <translation>Tangens hyperbolicus</translation>
    </message>
    <message>
        <source>inverse of sinh(x)</source>
        <translation>Umkehrung von sinh(x)</translation>
    </message>
    <message>
        <source>inverse of cosh(x)</source>
        <translation>Umkehrung von cosh(x)</translation>
    </message>
    <message>
        <source>inverse of tanh(x)</source>
        <translation>Umkehrung von tanh(x)</translation>
    </message>
    <message>
        <source>Natural logarithm</source>
        <translation>natürlicher Logarithmus</translation>
    </message>
    <message>
        <source>Logarithm base 10</source>
        <translation>Logarithmus zur Basis 10</translation>
    </message>
    <message>
        <source>It is the natural logarithm, the same as ln(x). log10(x) has base 10.</source>
        <translation>Es ist der natürliche Logarithmus, wie ln(x). log10(x) hat die Basis 10.</translation>
    </message>
    <message>
        <source>Logarithm base 2</source>
        <translation>Logarithmus zur Basis 2</translation>
    </message>
    <message>
        <source>e to the power of x</source>
        <translation>e hoch x</translation>
    </message>
    <message>
        <source>square of x (x*x)</source>
        <translation>Quadrat von x (x*x)</translation>
    </message>
    <message>
        <source>square root of x</source>
        <translation>Quadratwurzel von x</translation>
    </message>
    <message>
        <source>the smallest of the arguments</source>
        <translation>das kleinste der Argumente</translation>
    </message>
    <message>
        <source>With a null as the first argument the result is null; a later null is passed over.</source>
        <translation>Mit NULL als erstem Argument ist das Ergebnis NULL; ein späteres NULL wird übergangen.</translation>
    </message>
    <message>
        <source>the largest of the arguments</source>
        <translation>das größte der Argumente</translation>
    </message>
    <message>
        <source>the sum of the arguments</source>
        <translation>die Summe der Argumente</translation>
    </message>
    <message>
        <source>if x is nan or NULL return y, otherwise return x</source>
        <translation>y, wenn x nan oder NULL ist, sonst x</translation>
    </message>
    <message>
        <source>The missing value is what it looks for.</source>
        <translation>Der fehlende Wert ist das, wonach sie sucht.</translation>
    </message>
    <message>
        <source>Any NaN counts, null included; isNan(x) knows only one.</source>
        <translation>Jedes NaN zählt, auch NULL; isNan(x) kennt nur eines.</translation>
    </message>
    <message>
        <source>if x is nan or NULL return z, otherwise return y</source>
        <translation>z, wenn x nan oder NULL ist, sonst y</translation>
    </message>
    <message>
        <source>if x is finite return x, otherwise return y</source>
        <translation>x, wenn x endlich ist, sonst y</translation>
    </message>
    <message>
        <source>A null is not finite, so y is the result.</source>
        <translation>NULL ist nicht endlich, das Ergebnis ist also y.</translation>
    </message>
    <message>
        <source>if x is finite return y, otherwise return z</source>
        <translation>y, wenn x endlich ist, sonst z</translation>
    </message>
    <message>
        <source>A null is not finite, so z is the result.</source>
        <translation>NULL ist nicht endlich, das Ergebnis ist also z.</translation>
    </message>
    <message>
        <source>return 1 if x is nan, otherwise return 0</source>
        <translation>1, wenn x nan ist, sonst 0</translation>
    </message>
    <message>
        <source>A null is missing rather than not a number: 0.</source>
        <translation>NULL fehlt und ist nicht etwa keine Zahl: 0.</translation>
    </message>
    <message>
        <source>It knows the nan of 0/0 and of most functions, but not those of acos(2), asin(2) and log10(-1). nanvl(x, y) replaces them all.</source>
        <translation>Sie kennt das nan von 0/0 und den meisten Funktionen, aber nicht das von acos(2), asin(2) und log10(-1). nanvl(x, y) ersetzt alle.</translation>
    </message>
    <message>
        <source>return a true value if x is neither infinite nor nan nor NULL</source>
        <translation>ein wahrer Wert, wenn x weder unendlich noch nan noch NULL ist</translation>
    </message>
    <message>
        <source>A null is not finite: 0.</source>
        <translation>NULL ist nicht endlich: 0.</translation>
    </message>
    <message>
        <source>The true value is -1. Write isFinite(x) ? 1 : 0 where 1 is wanted.</source>
        <translation>Der wahre Wert ist -1. Schreiben Sie isFinite(x) ? 1 : 0, wo 1 gebraucht wird.</translation>
    </message>
    <message>
        <source>On Strings</source>
        <translation>Texte</translation>
    </message>
    <message>
        <source>return 1 if the string x contains the string y, otherwise return 0</source>
        <translation>1, wenn der Text x den Text y enthält, sonst 0</translation>
    </message>
    <message>
        <source>A null in any argument gives 0.</source>
        <translation>NULL in einem Argument ergibt 0.</translation>
    </message>
    <message>
        <source>position of the string y inside the string x</source>
        <translation>Position des Textes y im Text x</translation>
    </message>
    <message>
        <source>Positions count from 0; -1 when there is none.</source>
        <translation>Positionen zählen ab 0; -1, wenn es keine gibt.</translation>
    </message>
    <message>
        <source>position of the string y inside the string x, searching from position p</source>
        <translation>Position des Textes y im Text x, gesucht ab Position p</translation>
    </message>
    <message>
        <source>last position of the string y inside the string x</source>
        <translation>letzte Position des Textes y im Text x</translation>
    </message>
    <message>
        <source>last position of the string y inside the string x, searching backwards from position p</source>
        <translation>letzte Position des Textes y im Text x, rückwärts gesucht ab Position p</translation>
    </message>
    <message>
        <source>number of occurrences of the string y inside the string x</source>
        <translation>wie oft der Text y im Text x vorkommt</translation>
    </message>
    <message>
        <source>part of the string x that starts at position b and has l characters</source>
        <translation>Teil des Textes x, der an Position b beginnt und l Zeichen hat</translation>
    </message>
    <message>
        <source>Positions count from 0. One below 0 counts as 0, one past the end as the end.</source>
        <translation>Positionen zählen ab 0. Eine unter 0 gilt als 0, eine hinter dem Ende als das Ende.</translation>
    </message>
    <message>
        <source>part of the string x from position b up to, but without, position e</source>
        <translation>Teil des Textes x von Position b bis vor Position e</translation>
    </message>
    <message>
        <source>When e is not behind b the result is the null text, not the empty one.</source>
        <translation>Liegt e nicht hinter b, ist das Ergebnis der Text NULL, nicht der leere.</translation>
    </message>
    <message>
        <source>replaces every &quot;before&quot; inside the string s by &quot;after&quot;</source>
        <translation>ersetzt jedes &quot;before&quot; im Text s durch &quot;after&quot;</translation>
    </message>
    <message>
        <source>the first l characters of the string s</source>
        <translation>die ersten l Zeichen des Textes s</translation>
    </message>
    <message>
        <source>the last l characters of the string s</source>
        <translation>die letzten l Zeichen des Textes s</translation>
    </message>
    <message>
        <source>return 1 if the string x starts with the string s, otherwise return 0</source>
        <translation>1, wenn der Text x mit dem Text s beginnt, sonst 0</translation>
    </message>
    <message>
        <source>return 1 if the string x ends with the string s, otherwise return 0</source>
        <translation>1, wenn der Text x mit dem Text s endet, sonst 0</translation>
    </message>
    <message>
        <source>number of characters of the string s</source>
        <translation>Anzahl der Zeichen des Textes s</translation>
    </message>
    <message>
        <source>Lengths and positions count 16-bit units, so a character beyond the basic plane, such as most emoji, counts 2.</source>
        <translation>Längen und Positionen zählen 16-Bit-Einheiten; ein Zeichen jenseits der Grundebene, etwa die meisten Emojis, zählt 2.</translation>
    </message>
    <message>
        <source>the string s in upper case</source>
        <translation>der Text s in Großbuchstaben</translation>
    </message>
    <message>
        <source>the string s in lower case</source>
        <translation>der Text s in Kleinbuchstaben</translation>
    </message>
    <message>
        <source>the string s in the form that compares without regard to case</source>
        <translation>der Text s in der Form, die sich ohne Rücksicht auf Groß und Klein vergleichen lässt</translation>
    </message>
    <message>
        <source>Characters are folded one by one, so &quot;ß&quot; and &quot;SS&quot; stay apart.</source>
        <translation>Zeichen werden einzeln umgeformt, &quot;ß&quot; und &quot;SS&quot; bleiben also verschieden.</translation>
    </message>
    <message>
        <source>the string s without blanks at its start and end</source>
        <translation>der Text s ohne Leerzeichen am Anfang und Ende</translation>
    </message>
    <message>
        <source>the string s without blanks at its start</source>
        <translation>der Text s ohne Leerzeichen am Anfang</translation>
    </message>
    <message>
        <source>the string s without blanks at its end</source>
        <translation>der Text s ohne Leerzeichen am Ende</translation>
    </message>
    <message>
        <source>the string x without the string y at its start and end</source>
        <translation>der Text x ohne den Text y am Anfang und Ende</translation>
    </message>
    <message>
        <source>return 1 if the string x contains a number, otherwise return 0</source>
        <translation>1, wenn der Text x eine Zahl enthält, sonst 0</translation>
    </message>
    <message>
        <source>The null text gives 1, as everything that is no text does.</source>
        <translation>Der Text NULL ergibt 1, wie alles, was kein Text ist.</translation>
    </message>
    <message>
        <source>Of a number instead of a text the answer is always 1.</source>
        <translation>Für eine Zahl statt eines Textes ist die Antwort immer 1.</translation>
    </message>
    <message>
        <source>return 1 if the string x is a number, otherwise return 0</source>
        <translation>1, wenn der Text x eine Zahl ist, sonst 0</translation>
    </message>
    <message>
        <source>return 1 if the string x contains an integer number, otherwise return 0</source>
        <translation>1, wenn der Text x eine ganze Zahl enthält, sonst 0</translation>
    </message>
    <message>
        <source>return 1 if the string x is an integer number, otherwise return 0</source>
        <translation>1, wenn der Text x eine ganze Zahl ist, sonst 0</translation>
    </message>
    <message>
        <source>unicode codepoint of the last character of the string x</source>
        <translation>Unicode-Nummer des letzten Zeichens des Textes x</translation>
    </message>
    <message>
        <source>Of the empty text it is null.</source>
        <translation>Für den leeren Text ist sie NULL.</translation>
    </message>
    <message>
        <source>String Encode/Decode</source>
        <translation>Texte kodieren und dekodieren</translation>
    </message>
    <message>
        <source>the number that the string s contains</source>
        <translation>die Zahl, die der Text s enthält</translation>
    </message>
    <message>
        <source>Null when there is no number. &quot;,&quot; is a decimal comma where it stands between digits and no &quot;.&quot; occurs.</source>
        <translation>NULL, wenn keine Zahl da ist. &quot;,&quot; ist ein Dezimalkomma, wo es zwischen Ziffern steht und kein &quot;.&quot; vorkommt.</translation>
    </message>
    <message>
        <source>the number x as a string, with 6 significant digits</source>
        <translation>die Zahl x als Text mit 6 gültigen Ziffern</translation>
    </message>
    <message>
        <source>Text outputs and text variables keep all digits of a number. Of the nans only the one that isNan(x) knows is &quot;nan&quot;; others are &quot;inf&quot; or &quot;-inf&quot;.</source>
        <translation>Text-Ausgaben und Textvariablen behalten alle Ziffern einer Zahl. Von den nan heißt nur das, das isNan(x) kennt, &quot;nan&quot;; andere sind &quot;inf&quot; oder &quot;-inf&quot;.</translation>
    </message>
    <message>
        <source>the integer part of x as a string</source>
        <translation>der ganze Teil von x als Text</translation>
    </message>
    <message>
        <source>urlEncode(s): the string s as a part of a URL</source>
        <translation>urlEncode(s): der Text s als Teil einer URL</translation>
    </message>
    <message>
        <source>xmlEncode(s): the string s as a text inside XML</source>
        <translation>xmlEncode(s): der Text s als Text in XML</translation>
    </message>
    <message>
        <source>jsonEncode(s): the string s as a text inside JSON</source>
        <translation>jsonEncode(s): der Text s als Text in JSON</translation>
    </message>
    <message>
        <source>the UTF-8 bytes of the string x in base64</source>
        <translation>die UTF-8-Bytes des Textes x in base64</translation>
    </message>
    <message>
        <source>the Latin-1 bytes of the string x in base64</source>
        <translation>die Latin-1-Bytes des Textes x in base64</translation>
    </message>
    <message>
        <source>the string whose UTF-8 bytes x holds in base64</source>
        <translation>der Text, dessen UTF-8-Bytes x in base64 enthält</translation>
    </message>
    <message>
        <source>Null when x is no base64.</source>
        <translation>NULL, wenn x kein base64 ist.</translation>
    </message>
    <message>
        <source>the string whose Latin-1 bytes x holds in base64</source>
        <translation>der Text, dessen Latin-1-Bytes x in base64 enthält</translation>
    </message>
    <message>
        <source>the number that the string x holds in hexadecimal digits</source>
        <translation>die Zahl, die der Text x in Hexadezimalziffern enthält</translation>
    </message>
    <message>
        <source>Null when x is not hexadecimal.</source>
        <translation>NULL, wenn x nicht hexadezimal ist.</translation>
    </message>
    <message>
        <source>the positive integer x in hexadecimal digits</source>
        <translation>die positive ganze Zahl x in Hexadezimalziffern</translation>
    </message>
    <message>
        <source>the Latin-1 string whose bytes x holds in hexadecimal digits</source>
        <translation>der Latin-1-Text, dessen Bytes x in Hexadezimalziffern enthält</translation>
    </message>
    <message>
        <source>On Dates</source>
        <translation>Datum und Zeit</translation>
    </message>
    <message>
        <source>converts a date to an Elapsed Time (ET): a whole number of time units</source>
        <translation>wandelt ein Datum in eine verstrichene Zeit (ET): eine ganze Zahl von Zeiteinheiten</translation>
    </message>
    <message>
        <source>A null, an empty or an unreadable date gives null, or 0 with castToET2.</source>
        <translation>NULL, ein leeres oder unlesbares Datum ergibt NULL, oder 0 mit castToET2.</translation>
    </message>
    <message>
        <source>A date before the reference time gives null, or 0 with castToET1. A year of two digits is one of the 1900s. A day is 24 hours, also in local time, where the clock may have changed in between.</source>
        <translation>Ein Datum vor der Bezugszeit ergibt NULL, oder 0 mit castToET1. Ein zweistelliges Jahr ist eines der 1900er. Ein Tag hat 24 Stunden, auch in Ortszeit, in der die Uhr dazwischen umgestellt worden sein kann.</translation>
    </message>
    <message>
        <source>converts a date to an Elapsed Time (ET), with its fraction</source>
        <translation>wandelt ein Datum in eine verstrichene Zeit (ET) mit ihrem Bruchteil</translation>
    </message>
    <message>
        <source>converts an Elapsed Time (ET) to a date</source>
        <translation>wandelt eine verstrichene Zeit (ET) in ein Datum</translation>
    </message>
    <message>
        <source>Units are as long as those of toET(date).</source>
        <translation>Einheiten sind so lang wie die von toET(date).</translation>
    </message>
    <message>
        <source>adds y years, M months and d days to an Elapsed Time</source>
        <translation>addiert y Jahre, M Monate und d Tage zu einer verstrichenen Zeit</translation>
    </message>
    <message>
        <source>An addition that leaves the month&apos;s days lands on the month&apos;s last day.</source>
        <translation>Eine Addition, die über die Tage des Monats hinausgeht, endet am letzten Tag des Monats.</translation>
    </message>
    <message>
        <source>adds y years, M months and d days to a date</source>
        <translation>addiert y Jahre, M Monate und d Tage zu einem Datum</translation>
    </message>
    <message>
        <source>With a null or an unreadable date the result is null.</source>
        <translation>Mit NULL oder einem unlesbaren Datum ist das Ergebnis NULL.</translation>
    </message>
    <message>
        <source>adds s seconds to a date</source>
        <translation>addiert s Sekunden zu einem Datum</translation>
    </message>
    <message>
        <source>prints a date in another format</source>
        <translation>schreibt ein Datum in einem anderen Format</translation>
    </message>
    <message>
        <source>The date itself is read in the format of the action&apos;s settings. Names of days and months are English.</source>
        <translation>Das Datum selbst wird im Format der Einstellungen der Aktion gelesen. Namen von Tagen und Monaten sind englisch.</translation>
    </message>
    <message>
        <source>number of months between two Elapsed Times</source>
        <translation>Anzahl der Monate zwischen zwei verstrichenen Zeiten</translation>
    </message>
    <message>
        <source>Whole ones only, counted from the first date to the second; negative when the second is earlier.</source>
        <translation>Nur ganze, vom ersten Datum zum zweiten gezählt; negativ, wenn das zweite früher ist.</translation>
    </message>
    <message>
        <source>number of years between two Elapsed Times</source>
        <translation>Anzahl der Jahre zwischen zwei verstrichenen Zeiten</translation>
    </message>
    <message>
        <source>the week number (1 to 53, 0 if error)</source>
        <translation>die Nummer der Woche (1 bis 53, bei einem Fehler 0)</translation>
    </message>
    <message>
        <source>Weeks are those of ISO 8601: week 1 holds the first Thursday. The result of an error is null, unless castToET2 makes that of a date text 0.</source>
        <translation>Wochen zählen nach ISO 8601: Woche 1 enthält den ersten Donnerstag. Das Ergebnis eines Fehlers ist NULL, es sei denn, castToET2 macht das eines Datumstextes zu 0.</translation>
    </message>
    <message>
        <source>the Day of Week(0=monday; 6=sunday)</source>
        <translation>der Wochentag (0=Montag; 6=Sonntag)</translation>
    </message>
    <message>
        <source>Elapsed Time of the first day of week dow in the year y</source>
        <translation>verstrichene Zeit des ersten Wochentages dow im Jahr y</translation>
    </message>
    <message>
        <source>The first such weekday on or after 1 January; 0 is Monday.</source>
        <translation>Der erste solche Wochentag ab dem 1. Januar; 0 ist Montag.</translation>
    </message>
    <message>
        <source>With a null the result is null; with an empty or unreadable date it is null, or 0 with castToET2.</source>
        <translation>Mit NULL ist das Ergebnis NULL; mit einem leeren oder unlesbaren Datum ist es NULL, oder 0 mit castToET2.</translation>
    </message>
    <message>
        <source>date of the first day of week dow in the year y</source>
        <translation>Datum des ersten Wochentages dow im Jahr y</translation>
    </message>
    <message>
        <source>number of months between two dates</source>
        <translation>Anzahl der Monate zwischen zwei Daten</translation>
    </message>
    <message>
        <source>number of years between two dates</source>
        <translation>Anzahl der Jahre zwischen zwei Daten</translation>
    </message>
    <message>
        <source>number of days between two dates</source>
        <translation>Anzahl der Tage zwischen zwei Daten</translation>
    </message>
    <message>
        <source>number of seconds between two dates</source>
        <translation>Anzahl der Sekunden zwischen zwei Daten</translation>
    </message>
    <message>
        <source>return 1 if the instant x is before the instant y</source>
        <translation>1, wenn der Zeitpunkt x vor dem Zeitpunkt y liegt</translation>
    </message>
    <message>
        <source>With a null or an unreadable date the result is 0.</source>
        <translation>Mit NULL oder einem unlesbaren Datum ist das Ergebnis 0.</translation>
    </message>
    <message>
        <source>return 1 if the instant x is not after the instant y</source>
        <translation>1, wenn der Zeitpunkt x nicht nach dem Zeitpunkt y liegt</translation>
    </message>
    <message>
        <source>return 1 if the day of x is before the day of y</source>
        <translation>1, wenn der Tag von x vor dem Tag von y liegt</translation>
    </message>
    <message>
        <source>return 1 if the day of x is not after the day of y</source>
        <translation>1, wenn der Tag von x nicht nach dem Tag von y liegt</translation>
    </message>
    <message>
        <source>similar to &quot;EOMonth(date,x)&quot; from excel</source>
        <translation>ähnlich wie &quot;EOMonth(date,x)&quot; in Excel</translation>
    </message>
    <message>
        <source>The last day of the month x months later.</source>
        <translation>Der letzte Tag des Monats x Monate später.</translation>
    </message>
    <message>
        <source>similar to &quot;dateEOM()&quot; but for quarters</source>
        <translation>ähnlich wie &quot;dateEOM()&quot;, aber für Quartale</translation>
    </message>
    <message>
        <source>The last day of the quarter x quarters later.</source>
        <translation>Der letzte Tag des Quartals x Quartale später.</translation>
    </message>
    <message>
        <source>number of days of the month (1 to 12) of the year</source>
        <translation>Anzahl der Tage des Monats (1 bis 12) im Jahr</translation>
    </message>
    <message>
        <source>Every fourth year counts as a leap year, 1900 and 2100 too. Months below 0 or above 12 give null, month 0 gives 0.</source>
        <translation>Jedes vierte Jahr gilt als Schaltjahr, auch 1900 und 2100. Monate unter 0 oder über 12 ergeben NULL, Monat 0 ergibt 0.</translation>
    </message>
    <message>
        <source>On IP&apos;s</source>
        <translation>IP-Adressen</translation>
    </message>
    <message>
        <source>return 1 if the string x is an IP v4 address, otherwise return 0</source>
        <translation>1, wenn der Text x eine IPv4-Adresse ist, sonst 0</translation>
    </message>
    <message>
        <source>the IP v4 address x as a number</source>
        <translation>die IPv4-Adresse x als Zahl</translation>
    </message>
    <message>
        <source>one of the 4 parts of the IP v4 address x</source>
        <translation>einer der 4 Teile der IPv4-Adresse x</translation>
    </message>
    <message>
        <source>Parts count from 0.</source>
        <translation>Teile zählen ab 0.</translation>
    </message>
    <message>
        <source>the first address of the range x as a number</source>
        <translation>die erste Adresse des Bereichs x als Zahl</translation>
    </message>
    <message>
        <source>A range is a.b.c.d/len, or two addresses joined by &quot;-&quot;.</source>
        <translation>Ein Bereich ist a.b.c.d/len oder zwei mit &quot;-&quot; verbundene Adressen.</translation>
    </message>
    <message>
        <source>the last address of the range x as a number</source>
        <translation>die letzte Adresse des Bereichs x als Zahl</translation>
    </message>
    <message>
        <source>Operators</source>
        <translation>Operatoren</translation>
    </message>
    <message>
        <source>if a is true then b, otherwise c</source>
        <translation>b, wenn a wahr ist, sonst c</translation>
    </message>
    <message>
        <source>A null condition is an error or true; test it with isNull(x).</source>
        <translation>NULL als Bedingung ist ein Fehler oder wahr; prüfen Sie mit isNull(x).</translation>
    </message>
    <message>
        <source>In the String Parser a condition is a comparison or a test, not a number: write x != 0 rather than x.</source>
        <translation>Im String Parser ist eine Bedingung ein Vergleich oder eine Prüfung und keine Zahl: schreiben Sie x != 0 statt x.</translation>
    </message>
    <message>
        <source>unary minus: x with the opposite sign</source>
        <translation>Minus vor einem Wert: x mit dem anderen Vorzeichen</translation>
    </message>
    <message>
        <source>converts what follows to a floating point number</source>
        <translation>wandelt das Folgende in eine Gleitkommazahl</translation>
    </message>
    <message>
        <source>It binds closer than + and -, and looser than ^.</source>
        <translation>Er bindet stärker als + und - und schwächer als ^.</translation>
    </message>
    <message>
        <source>converts what follows to an integer, towards zero</source>
        <translation>wandelt das Folgende in eine ganze Zahl, zur Null hin</translation>
    </message>
    <message>
        <source>addition, subtraction, multiplication, division, power</source>
        <translation>Addition, Subtraktion, Multiplikation, Division, Potenz</translation>
    </message>
    <message>
        <source>With a null on either side the result is null, but x^0 and 1^x are 1.</source>
        <translation>Mit NULL auf einer Seite ist das Ergebnis NULL, aber x^0 und 1^x sind 1.</translation>
    </message>
    <message>
        <source>a^b^c is a^(b^c), and -a^b is -(a^b).</source>
        <translation>a^b^c ist a^(b^c), und -a^b ist -(a^b).</translation>
    </message>
    <message>
        <source>modulo: the remainder of a division</source>
        <translation>Modulo: der Rest einer Division</translation>
    </message>
    <message>
        <source>The remainder has the sign of the left side and may have a fraction.</source>
        <translation>Der Rest hat das Vorzeichen der linken Seite und kann einen Bruchteil haben.</translation>
    </message>
    <message>
        <source>logical and</source>
        <translation>logisches Und</translation>
    </message>
    <message>
        <source>Compare or test values first; see isNull(x).</source>
        <translation>Vergleichen oder prüfen Sie Werte zuerst; siehe isNull(x).</translation>
    </message>
    <message>
        <source>logical or</source>
        <translation>logisches Oder</translation>
    </message>
    <message>
        <source>comparisons</source>
        <translation>Vergleiche</translation>
    </message>
    <message>
        <source>A null number is never equal to anything, itself included; use isNull(x).</source>
        <translation>Die Zahl NULL ist nie gleich irgendetwas, auch nicht sich selbst; nehmen Sie isNull(x).</translation>
    </message>
    <message>
        <source>A single = assigns to a variable; == compares. Texts compare by their characters.</source>
        <translation>Ein einfaches = weist einer Variablen zu; == vergleicht. Texte werden Zeichen für Zeichen verglichen.</translation>
    </message>
    <message>
        <source>and, or, shift left and shift right of the bits of integers</source>
        <translation>Und, Oder, Verschieben nach links und nach rechts der Bits ganzer Zahlen</translation>
    </message>
    <message>
        <source>Numbers with a fraction, and those from 2^53 on, have no bits: a NaN.</source>
        <translation>Zahlen mit Bruchteil und solche ab 2^53 haben keine Bits: NaN.</translation>
    </message>
    <message>
        <source>string concatenation</source>
        <translation>Verkettung von Texten</translation>
    </message>
    <message>
        <source>Both sides are strings. ftoa(x) and itoa(x) make one of a number.</source>
        <translation>Beide Seiten sind Texte. ftoa(x) und itoa(x) machen aus einer Zahl einen.</translation>
    </message>
    <message>
        <source>Predefined Constants</source>
        <translation>Vordefinierte Konstanten</translation>
    </message>
    <message>
        <source>3.141592653589793238462643</source>
        <translation>3.141592653589793238462643</translation>
    </message>
    <message>
        <source>eulerian number (2.718281828459045235360287)</source>
        <translation>Eulersche Zahl (2.718281828459045235360287)</translation>
    </message>
    <message>
        <source>the NULL value (meta-type is &quot;number&quot;) - cannot be used inside any binary operator</source>
        <translation>der Wert NULL (Meta-Typ &quot;number&quot;) - in keinem zweiseitigen Operator verwendbar</translation>
    </message>
    <message>
        <source>x == _null is never true; use isNull(x).</source>
        <translation>x == _null ist nie wahr; nehmen Sie isNull(x).</translation>
    </message>
    <message>
        <source>the NULL string (meta-type is &quot;string&quot;)- cannot be used inside any binary operator</source>
        <translation>der Text NULL (Meta-Typ &quot;string&quot;) - in keinem zweiseitigen Operator verwendbar</translation>
    </message>
    <message>
        <source>It is apart from the empty string &quot;&quot;.</source>
        <translation>Er ist vom leeren Text &quot;&quot; verschieden.</translation>
    </message>
    <message>
        <source>not a number</source>
        <translation>keine Zahl</translation>
    </message>
    <message>
        <source>positive infinity</source>
        <translation>positiv unendlich</translation>
    </message>
    <message>
        <source>the current time as an Elapsed Time</source>
        <translation>die aktuelle Zeit als verstrichene Zeit</translation>
    </message>
    <message>
        <source>An action offers it when its setting is ticked; it is taken once, when the run starts.</source>
        <translation>Eine Aktion bietet sie an, wenn die Einstellung angekreuzt ist; sie wird einmal bestimmt, wenn der Lauf beginnt.</translation>
    </message>
    <message>
        <source>the current time as a date</source>
        <translation>die aktuelle Zeit als Datum</translation>
    </message>
    <message>
        <source>identifier for the current version of Kelvarin</source>
        <translation>Kennung der aktuellen Version von Kelvarin</translation>
    </message>
    <message>
        <source>the directory of the current .kelvarin file</source>
        <translation>das Verzeichnis der aktuellen .kelvarin-Datei</translation>
    </message>
    <message>
        <source>The working directory where there is no file.</source>
        <translation>Das Arbeitsverzeichnis, wenn es keine Datei gibt.</translation>
    </message>
    <message>
        <source>the directory for temporary files</source>
        <translation>das Verzeichnis für temporäre Dateien</translation>
    </message>
    <message>
        <source>the current .kelvarin filepath</source>
        <translation>der Pfad der aktuellen .kelvarin-Datei</translation>
    </message>
    <message>
        <source>Null where there is no file.</source>
        <translation>NULL, wenn es keine Datei gibt.</translation>
    </message>
    <message>
        <source>an ID that is guaranteed to be unique</source>
        <translation>eine garantiert eindeutige Kennung</translation>
    </message>
    <message>
        <source>A text, the same on every row of an action and another one in every run.</source>
        <translation>Ein Text, gleich in jeder Zeile einer Aktion und ein anderer in jedem Lauf.</translation>
    </message>
    <message>
        <source>Postfix operators</source>
        <translation>Nachgestellte Einheiten</translation>
    </message>
    <message>
        <source>nano (1e-9)</source>
        <translation>Nano (1e-9)</translation>
    </message>
    <message>
        <source>Written behind a number or a bracket: 3{k}, (x+1){k}.</source>
        <translation>Sie steht hinter einer Zahl oder einer Klammer: 3{k}, (x+1){k}.</translation>
    </message>
    <message>
        <source>micro (1e-6)</source>
        <translation>Mikro (1e-6)</translation>
    </message>
    <message>
        <source>{u} is another spelling.</source>
        <translation>{u} ist eine andere Schreibweise.</translation>
    </message>
    <message>
        <source>milli (1e-3)</source>
        <translation>Milli (1e-3)</translation>
    </message>
    <message>
        <source>kilo (1e3)</source>
        <translation>Kilo (1e3)</translation>
    </message>
    <message>
        <source>giga (1e6)</source>
        <translation>Giga (1e6)</translation>
    </message>
    <message>
        <source>It multiplies by 1e9.</source>
        <translation>Sie multipliziert mit 1e9.</translation>
    </message>
    <message>
        <source>mega (1e9)</source>
        <translation>Mega (1e9)</translation>
    </message>
    <message>
        <source>It multiplies by 1e6.</source>
        <translation>Sie multipliziert mit 1e6.</translation>
    </message>
    <message>
        <source>Special</source>
        <translation>Besonderes</translation>
    </message>
    <message>
        <source>return 1 if x is 0, otherwise return 0</source>
        <translation>1, wenn x 0 ist, sonst 0</translation>
    </message>
    <message>
        <source>return 1 if x is TRUE (1,Y,y,T,t,O,o,P,p), otherwise return 0</source>
        <translation>1, wenn x TRUE ist (1,Y,y,T,t,O,o,P,p), sonst 0</translation>
    </message>
    <message>
        <source>A null is not true: 0.</source>
        <translation>NULL ist nicht wahr: 0.</translation>
    </message>
    <message>
        <source>Every number but 0 is true, and every string that is not empty, whatever its letters.</source>
        <translation>Jede Zahl außer 0 ist wahr und jeder Text, der nicht leer ist, welche Buchstaben er auch hat.</translation>
    </message>
    <message>
        <source>return 1 if x is NULL, otherwise return 0</source>
        <translation>1, wenn x NULL ist, sonst 0</translation>
    </message>
    <message>
        <source>Native code knows it as isNuLL(x). Any other NaN is not null, nor is the empty string.</source>
        <translation>Nativer Code kennt sie als isNuLL(x). Jedes andere NaN ist nicht NULL und der leere Text auch nicht.</translation>
    </message>
    <message>
        <source>if x is NULL return y, otherwise return x</source>
        <translation>y, wenn x NULL ist, sonst x</translation>
    </message>
    <message>
        <source>if x is NULL return z, otherwise return y</source>
        <translation>z, wenn x NULL ist, sonst y</translation>
    </message>
    <message>
        <source>the text of a file</source>
        <translation>der Text einer Datei</translation>
    </message>
    <message>
        <source>The file is UTF-8 and at most 64 MiB long; null when it cannot be read. A relative name starts at the graph file&apos;s directory.</source>
        <translation>Die Datei ist UTF-8 und höchstens 64 MiB lang; NULL, wenn sie nicht gelesen werden kann. Ein relativer Name beginnt im Verzeichnis der Graphdatei.</translation>
    </message>
    <message>
        <source>return the earth distance using Haversine Formula (all coord. in decimal degree)</source>
        <translation>Entfernung auf der Erde nach der Haversine-Formel (alle Koordinaten in Dezimalgrad)</translation>
    </message>
    <message>
        <source>In kilometres.</source>
        <translation>In Kilometern.</translation>
    </message>
    <message>
        <source>the same distance between two packed positions</source>
        <translation>dieselbe Entfernung zwischen zwei gepackten Positionen</translation>
    </message>
    <message>
        <source>A packed position is round((lat + 90) * 1e5) * 1e8 + round((lon + 180) * 1e5). Anything else gives null.</source>
        <translation>Eine gepackte Position ist round((lat + 90) * 1e5) * 1e8 + round((lon + 180) * 1e5). Alles andere ergibt NULL.</translation>
    </message>
    <message>
        <source>Further functions</source>
        <translation>Weitere Funktionen</translation>
    </message>
    <message>
        <source>the spelling of isNull(x) that native code knows</source>
        <translation>die Schreibweise von isNull(x), die nativer Code kennt</translation>
    </message>
    <message>
        <source>An expression with it cannot be shown step by step; isNull(x) can.</source>
        <translation>Ein Ausdruck damit kann nicht schrittweise gezeigt werden; mit isNull(x) schon.</translation>
    </message>
    <message>
        <source>return 1 if x is NULL or an empty string, otherwise return 0</source>
        <translation>1, wenn x NULL oder ein leerer Text ist, sonst 0</translation>
    </message>
    <message>
        <source>another spelling</source>
        <translation>andere Schreibweise</translation>
    </message>
    <message>
        <source>The same as roundUp.</source>
        <translation>Dasselbe wie roundUp.</translation>
    </message>
    <message>
        <source>The same as roundDown.</source>
        <translation>Dasselbe wie roundDown.</translation>
    </message>
    <message>
        <source>closest integer; a half goes up</source>
        <translation>nächste ganze Zahl; eine Hälfte wird aufgerundet</translation>
    </message>
    <message>
        <source>round(x) takes a half away from zero.</source>
        <translation>round(x) rundet eine Hälfte von der Null weg.</translation>
    </message>
    <message>
        <source>the integer part of x, towards zero</source>
        <translation>der ganze Teil von x, zur Null hin</translation>
    </message>
    <message>
        <source>-1, 0 or 1 for a negative x, 0 or a positive x</source>
        <translation>-1, 0 oder 1 für ein negatives x, 0 oder ein positives x</translation>
    </message>
    <message>
        <source>A null gives 0.</source>
        <translation>NULL ergibt 0.</translation>
    </message>
    <message>
        <source>cube root of x</source>
        <translation>Kubikwurzel von x</translation>
    </message>
    <message>
        <source>square root of x*x + y*y</source>
        <translation>Quadratwurzel von x*x + y*y</translation>
    </message>
    <message>
        <source>With a null the result is null, but infinite beside an infinite argument.</source>
        <translation>Mit NULL ist das Ergebnis NULL, aber unendlich neben einem unendlichen Argument.</translation>
    </message>
    <message>
        <source>remainder of x / y, the same as x % y</source>
        <translation>Rest von x / y, dasselbe wie x % y</translation>
    </message>
    <message>
        <source>x minus the closest multiple of y</source>
        <translation>x minus das nächste Vielfache von y</translation>
    </message>
    <message>
        <source>x to the power of y</source>
        <translation>x hoch y</translation>
    </message>
    <message>
        <source>With a null the result is null, but pow(x, 0) and pow(1, y) are 1.</source>
        <translation>Mit NULL ist das Ergebnis NULL, aber pow(x, 0) und pow(1, y) sind 1.</translation>
    </message>
    <message>
        <source>the mean of the arguments</source>
        <translation>der Mittelwert der Argumente</translation>
    </message>
    <message>
        <source>16-bit code of the character at position i</source>
        <translation>16-Bit-Code des Zeichens an Position i</translation>
    </message>
    <message>
        <source>Positions count from 0; -1 outside the string.</source>
        <translation>Positionen zählen ab 0; -1 außerhalb des Textes.</translation>
    </message>
    <message>
        <source>It takes two arguments, although its help text shows three; lastindexof2 takes three.</source>
        <translation>Sie nimmt zwei Argumente, obwohl ihr Hilfetext drei zeigt; lastindexof2 nimmt drei.</translation>
    </message>
    <message>
        <source>the name of the program, whatever x is</source>
        <translation>der Name des Programms, was x auch ist</translation>
    </message>
    <message>
        <source>Further constants</source>
        <translation>Weitere Konstanten</translation>
    </message>
    <message>
        <source>pi with 12 decimals</source>
        <translation>Pi mit 12 Nachkommastellen</translation>
    </message>
    <message>
        <source>Prefer pi.</source>
        <translation>Besser ist pi.</translation>
    </message>
    <message>
        <source>the same as e</source>
        <translation>dasselbe wie e</translation>
    </message>
    <message>
        <source>the number of the row, from 0</source>
        <translation>die Nummer der Zeile, ab 0</translation>
    </message>
    <message>
        <source>An action offers it when its setting is ticked.</source>
        <translation>Eine Aktion bietet sie an, wenn die Einstellung angekreuzt ist.</translation>
    </message>
    <message>
        <source>a condition that is true</source>
        <translation>eine Bedingung, die wahr ist</translation>
    </message>
    <message>
        <source>a condition that is false</source>
        <translation>eine Bedingung, die falsch ist</translation>
    </message>
    <message>
        <source>the directory of the running program</source>
        <translation>das Verzeichnis des laufenden Programms</translation>
    </message>
    <message>
        <source>Further operators</source>
        <translation>Weitere Operatoren</translation>
    </message>
    <message>
        <source>factorial of a whole number</source>
        <translation>Fakultät einer ganzen Zahl</translation>
    </message>
    <message>
        <source>A null is an error.</source>
        <translation>NULL ist ein Fehler.</translation>
    </message>
    <message>
        <source>For more than two values: nvl(a, nvl(b, c))</source>
        <translation>Für mehr als zwei Werte: nvl(a, nvl(b, c))</translation>
    </message>
    <message>
        <source>nvl(x, 0)</source>
        <translation>nvl(x, 0)</translation>
    </message>
    <message>
        <source>(x == y ? _null : x)</source>
        <translation>(x == y ? _null : x)</translation>
    </message>
    <message>
        <source>isNull(x) asks whether a value is missing.</source>
        <translation>isNull(x) fragt, ob ein Wert fehlt.</translation>
    </message>
    <message>
        <source>Numbers that cannot be computed are nan or infinite.</source>
        <translation>Zahlen, die sich nicht berechnen lassen, sind nan oder unendlich.</translation>
    </message>
    <message>
        <source>Chain them: (a ? 1 : b ? 2 : 3)</source>
        <translation>Verketten Sie sie: (a ? 1 : b ? 2 : 3)</translation>
    </message>
    <message>
        <source>(condition ? then : else)</source>
        <translation>(Bedingung ? dann : sonst)</translation>
    </message>
    <message>
        <source>isTrue(a) != isTrue(b)</source>
        <translation>isTrue(a) != isTrue(b)</translation>
    </message>
    <message>
        <source>x &gt;= a &amp;&amp; x &lt;= b</source>
        <translation>x &gt;= a &amp;&amp; x &lt;= b</translation>
    </message>
    <message>
        <source>x == a || x == b</source>
        <translation>x == a || x == b</translation>
    </message>
    <message>
        <source>A single = assigns to a variable; == compares.</source>
        <translation>Ein einfaches = weist einer Variablen zu; == vergleicht.</translation>
    </message>
    <message>
        <source>x % y</source>
        <translation>x % y</translation>
    </message>
    <message>
        <source>floor(x) rounds down, (int)x rounds towards zero.</source>
        <translation>floor(x) rundet ab, (int)x rundet zur Null hin.</translation>
    </message>
    <message>
        <source>The closest multiple of y: round(x / y) * y</source>
        <translation>Das nächste Vielfache von y: round(x / y) * y</translation>
    </message>
    <message>
        <source>An integer from a to b: a + randN(b - a + 1)</source>
        <translation>Eine ganze Zahl von a bis b: a + randN(b - a + 1)</translation>
    </message>
    <message>
        <source>An expression sees one row. Totals over rows are no functions of expressions.</source>
        <translation>Ein Ausdruck sieht eine Zeile. Summen über Zeilen sind keine Funktionen von Ausdrücken.</translation>
    </message>
    <message>
        <source>_n counts from 0.</source>
        <translation>_n zählt ab 0.</translation>
    </message>
    <message>
        <source>x * pi / 180</source>
        <translation>x * pi / 180</translation>
    </message>
    <message>
        <source>x * 180 / pi</source>
        <translation>x * 180 / pi</translation>
    </message>
    <message>
        <source>(int)atof(s)</source>
        <translation>(int)atof(s)</translation>
    </message>
    <message>
        <source>itoa(x) for integers, ftoa(x) for 6 digits.</source>
        <translation>itoa(x) für ganze Zahlen, ftoa(x) für 6 Ziffern.</translation>
    </message>
    <message>
        <source>a // b // c</source>
        <translation>a // b // c</translation>
    </message>
    <message>
        <source>Positions count from 0.</source>
        <translation>Positionen zählen ab 0.</translation>
    </message>
    <message>
        <source>Positions count from 0, and -1 means that there is none.</source>
        <translation>Positionen zählen ab 0, und -1 heißt, dass es keine gibt.</translation>
    </message>
    <message>
        <source>htoa(ftoh(code)) gives the Latin-1 character of a code.</source>
        <translation>htoa(ftoh(code)) ergibt das Latin-1-Zeichen eines Codes.</translation>
    </message>
    <message>
        <source>dateAdd(date, 0, months, 0)</source>
        <translation>dateAdd(date, 0, months, 0)</translation>
    </message>
    <message>
        <source>dateEOM(date, 0)</source>
        <translation>dateEOM(date, 0)</translation>
    </message>
    <message>
        <source>The year of a date: atof(datePrint(date, &quot;yyyy&quot;))</source>
        <translation>Das Jahr eines Datums: atof(datePrint(date, &quot;yyyy&quot;))</translation>
    </message>
    <message>
        <source>The month of a date: atof(datePrint(date, &quot;M&quot;))</source>
        <translation>Der Monat eines Datums: atof(datePrint(date, &quot;M&quot;))</translation>
    </message>
    <message>
        <source>The day of the month of a date: atof(datePrint(date, &quot;d&quot;))</source>
        <translation>Der Tag im Monat eines Datums: atof(datePrint(date, &quot;d&quot;))</translation>
    </message>
    <message>
        <source>The hour of a date: atof(datePrint(date, &quot;H&quot;))</source>
        <translation>Die Stunde eines Datums: atof(datePrint(date, &quot;H&quot;))</translation>
    </message>
    <message>
        <source>The minute of a date: atof(datePrint(date, &quot;m&quot;))</source>
        <translation>Die Minute eines Datums: atof(datePrint(date, &quot;m&quot;))</translation>
    </message>
    <message>
        <source>The second of a date: atof(datePrint(date, &quot;s&quot;))</source>
        <translation>Die Sekunde eines Datums: atof(datePrint(date, &quot;s&quot;))</translation>
    </message>
    <message>
        <source>Added by Kelvarin</source>
        <translation>Von Kelvarin ergänzt</translation>
    </message>
    <message>
        <source>return 1 if the regular expression matches somewhere in the string s, otherwise return 0</source>
        <translation>1, wenn der reguläre Ausdruck irgendwo im Text s passt, sonst 0</translation>
    </message>
    <message>
        <source>A backslash is written twice, as in every text of an expression. There are no back-references and no looking ahead or back: searching takes time in proportion to the string. Upper and lower case are the same behind (?i).</source>
        <translation>Ein Backslash wird doppelt geschrieben, wie in jedem Text eines Ausdrucks. Es gibt keine Rückverweise und kein Vor- oder Zurückschauen: Die Suche dauert so lange, wie es der Länge des Textes entspricht. Hinter (?i) sind Groß- und Kleinbuchstaben gleich.</translation>
    </message>
    <message>
        <source>the part of the string s that a group of the regular expression matches; group 0 is all that it matches</source>
        <translation>der Teil des Textes s, auf den eine Gruppe des regulären Ausdrucks passt; Gruppe 0 ist alles, worauf er passt</translation>
    </message>
    <message>
        <source>Null where nothing matches and where the pattern has no such group or the group took no part. Groups count from 1 in the order of their opening brackets; (?:x) is none.</source>
        <translation>NULL, wenn nichts passt, wenn das Muster keine solche Gruppe hat oder wenn sie nicht beteiligt war. Gruppen zählen ab 1 in der Reihenfolge ihrer öffnenden Klammern; (?:x) ist keine.</translation>
    </message>
    <message>
        <source>replaces every match of the regular expression in the string s by &quot;by&quot;</source>
        <translation>ersetzt jede Stelle des Textes s, auf die der reguläre Ausdruck passt, durch &quot;by&quot;</translation>
    </message>
    <message>
        <source>In the third argument &quot;\\1&quot; to &quot;\\9&quot; are the groups, &quot;\\0&quot; is all of the match and &quot;\\\\&quot; a backslash.</source>
        <translation>Im dritten Argument sind &quot;\\1&quot; bis &quot;\\9&quot; die Gruppen, &quot;\\0&quot; ist die ganze Stelle und &quot;\\\\&quot; ein Backslash.</translation>
    </message>
    <message>
        <source>part n (from 0) of the string s, whose parts are between separators</source>
        <translation>Teil n (ab 0) des Textes s, dessen Teile zwischen Trennzeichen stehen</translation>
    </message>
    <message>
        <source>Null where there are not so many parts. An empty separator stands nowhere, so part 0 is the whole string.</source>
        <translation>NULL, wenn es nicht so viele Teile gibt. Ein leeres Trennzeichen steht nirgends, daher ist Teil 0 der ganze Text.</translation>
    </message>
    <message>
        <source>the string s, filled with c at its start until it has n characters</source>
        <translation>der Text s, vorn mit c aufgefüllt, bis er n Zeichen hat</translation>
    </message>
    <message>
        <source>A longer string stays as it is. Several characters of c are taken in turn.</source>
        <translation>Ein längerer Text bleibt, wie er ist. Mehrere Zeichen von c werden der Reihe nach genommen.</translation>
    </message>
    <message>
        <source>the string s, filled with c at its end until it has n characters</source>
        <translation>der Text s, hinten mit c aufgefüllt, bis er n Zeichen hat</translation>
    </message>
    <message>
        <source>A text that is longer already stays as it is.</source>
        <translation>Ein Text, der schon länger ist, bleibt, wie er ist.</translation>
    </message>
    <message>
        <source>padLeft(x, n, &quot;0&quot;)</source>
        <translation>padLeft(x, n, &quot;0&quot;)</translation>
    </message>
    <message>
        <source>regexExtract(s, pattern, 0)</source>
        <translation>regexExtract(s, muster, 0)</translation>
    </message>
</context>
<context>
    <name>Language</name>
    <message>
        <source>The expression takes too long to be tried here: more than a second for a row. Write it shorter, or split it into several expressions.</source>
        <translation>Der Ausdruck braucht zu lange, um hier probiert zu werden: mehr als eine Sekunde für eine Zeile. Schreiben Sie ihn kürzer, oder teilen Sie ihn in mehrere Ausdrücke auf.</translation>
    </message>
    <message>
        <source>An earlier expression is still being evaluated, so this one is not tried.</source>
        <translation>Ein früherer Ausdruck wird noch ausgewertet, deshalb wird dieser nicht probiert.</translation>
    </message>
    <message>
        <source>What &apos;%1&apos; reads is read at the start of a run, so there are no values here.</source>
        <translation>Was &apos;%1&apos; liest, wird zu Beginn eines Laufs gelesen; hier gibt es deshalb keine Werte.</translation>
    </message>
    <message>
        <source>The key &apos;%1&apos; is missing, which stops the run.</source>
        <translation>Der Schlüssel &apos;%1&apos; fehlt, was den Lauf anhält.</translation>
    </message>
    <message>
        <source>The variable &apos;%1&apos; has no column: the input has none that is named &apos;%2&apos;.</source>
        <translation>Die Variable &apos;%1&apos; hat keine Spalte: in der Eingabe heißt keine &apos;%2&apos;.</translation>
    </message>
    <message>
        <source>The step debugger evaluates with the String parser, which does not know &apos;%1&apos;.</source>
        <translation>Der Schritt-Debugger wertet mit dem String Parser aus, der &apos;%1&apos; nicht kennt.</translation>
    </message>
    <message>
        <source>Write &apos;%1&apos;, which all engines know.</source>
        <translation>Schreiben Sie &apos;%1&apos;, das alle Rechenwerke kennen.</translation>
    </message>
    <message>
        <source>Replace by &apos;%1&apos;</source>
        <translation>Durch &apos;%1&apos; ersetzen</translation>
    </message>
    <message>
        <source>Make the column &apos;%1&apos; an input variable</source>
        <translation>Die Spalte &apos;%1&apos; zur Eingabevariablen machen</translation>
    </message>
    <message>
        <source>Compare with &apos;==&apos; instead of assigning</source>
        <translation>Mit &apos;==&apos; vergleichen statt zuzuweisen</translation>
    </message>
    <message>
        <source>Close the text with a quote</source>
        <translation>Den Text mit einem Anführungszeichen schließen</translation>
    </message>
    <message>
        <source>Add the missing &apos;%1&apos; at the end</source>
        <translation>Das fehlende &apos;%1&apos; am Ende ergänzen</translation>
    </message>
    <message>
        <source>Join the texts with &apos;//&apos;</source>
        <translation>Die Texte mit &apos;//&apos; verketten</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>date, as an elapsed time</source>
        <translation>Datum, als verstrichene Zeit</translation>
    </message>
    <message>
        <source>true or false</source>
        <translation>wahr oder falsch</translation>
    </message>
    <message>
        <source>number, stored as a text</source>
        <translation>Zahl, als Text gespeichert</translation>
    </message>
    <message>
        <source>number: true unless it is 0 or missing</source>
        <translation>Zahl: wahr, wenn sie nicht 0 ist und nicht fehlt</translation>
    </message>
    <message>
        <source>text: true unless it is empty or missing</source>
        <translation>Text: wahr, wenn er nicht leer ist und nicht fehlt</translation>
    </message>
    <message>
        <source>%1, because the %2 does not take &apos;%3&apos;</source>
        <translation>%1, weil der %2 &apos;%3&apos; nicht annimmt</translation>
    </message>
    <message>
        <source>%1, because the %2 does not take the expression</source>
        <translation>%1, weil der %2 den Ausdruck nicht annimmt</translation>
    </message>
    <message>
        <source>%1, because the result is a text</source>
        <translation>%1, weil das Ergebnis ein Text ist</translation>
    </message>
    <message>
        <source>%1, because the step debugger looks on</source>
        <translation>%1, weil der Schritt-Debugger zusieht</translation>
    </message>
    <message>
        <source>%1, because the JIT compiler is switched off</source>
        <translation>%1, weil der JIT-Compiler ausgeschaltet ist</translation>
    </message>
    <message>
        <source>%1 because `%2` is %1</source>
        <translation>%1, weil `%2` %1 ist</translation>
    </message>
    <message>
        <source>%1 because `%2` gives %1</source>
        <translation>%1, weil `%2` %1 ergibt</translation>
    </message>
    <message>
        <source>graph parameter</source>
        <translation>Parameter des Graphen</translation>
    </message>
    <message>
        <source>column, not yet an input variable</source>
        <translation>Spalte, noch keine Eingabevariable</translation>
    </message>
    <message>
        <source>column &apos;%1&apos;</source>
        <translation>Spalte &apos;%1&apos;</translation>
    </message>
    <message>
        <source>number of the row, counted from 0</source>
        <translation>Nummer der Zeile, ab 0 gezählt</translation>
    </message>
    <message>
        <source>for &apos;%1&apos;</source>
        <translation>für &apos;%1&apos;</translation>
    </message>
    <message>
        <source>Engines: %1</source>
        <translation>Rechenwerke: %1</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is a column of the input, but no input variable yet. Alt+Enter makes it one.</source>
        <translation>&apos;%1&apos; ist eine Spalte der Eingabe, aber noch keine Eingabevariable. Alt+Enter macht sie dazu.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is not offered to this expression. Tick &quot;add &apos;%1&apos; as input var&quot; in the settings.</source>
        <translation>&apos;%1&apos; wird diesem Ausdruck nicht angeboten. Kreuzen Sie &quot;&apos;%1&apos; als Eingabevariable anbieten&quot; in den Einstellungen an.</translation>
    </message>
    <message>
        <source>The result is a text, but the column takes numbers. Choose the type Text, or write atof(...) for the number that the text holds.</source>
        <translation>Das Ergebnis ist ein Text, aber die Spalte nimmt Zahlen. Wählen Sie den Typ Text, oder schreiben Sie atof(...) für die Zahl, die der Text enthält.</translation>
    </message>
</context>
<context>
    <name>PreviewCache</name>
    <message>
        <source>Nothing is linked to this pin, so no rows come here. Draw a link to it.</source>
        <translation>Mit diesem Anschluss ist nichts verbunden, also kommen hier keine Zeilen an. Ziehen Sie eine Verbindung zu ihm.</translation>
    </message>
    <message>
        <source>The action has no such output pin any more. Choose another one.</source>
        <translation>Die Aktion hat diesen Ausgang nicht mehr. Wählen Sie einen anderen.</translation>
    </message>
</context>
<context>
    <name>QAbstractSpinBox</name>
    <message>
        <source>&amp;Select All</source>
        <translation>Alles aus&amp;wählen</translation>
    </message>
    <message>
        <source>&amp;Step up</source>
        <translation>&amp;Erhöhen</translation>
    </message>
    <message>
        <source>Step &amp;down</source>
        <translation>&amp;Verringern</translation>
    </message>
</context>
<context>
    <name>QGnomeTheme</name>
    <message>
        <source>&amp;OK</source>
        <translation>&amp;OK</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Cancel</source>
        <translation>&amp;Abbrechen</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>Close without Saving</source>
        <translation>Schließen ohne Speichern</translation>
    </message>
</context>
<context>
    <name>QLineEdit</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;herstellen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>QPlatformTheme</name>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>Speichern</translation>
    </message>
    <message>
        <source>Open</source>
        <translation>Öffnen</translation>
    </message>
    <message>
        <source>&amp;Yes</source>
        <translation>&amp;Ja</translation>
    </message>
    <message>
        <source>&amp;No</source>
        <translation>&amp;Nein</translation>
    </message>
    <message>
        <source>Retry</source>
        <translation>Wiederholen</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Apply</source>
        <translation>Anwenden</translation>
    </message>
    <message>
        <source>Reset</source>
        <translation>Zurücksetzen</translation>
    </message>
</context>
<context>
    <name>QShortcut</name>
    <message>
        <source>Ctrl</source>
        <translation>Strg</translation>
    </message>
    <message>
        <source>Shift</source>
        <translation>Umschalt</translation>
    </message>
    <message>
        <source>Del</source>
        <translation>Entf</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leertaste</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Auf</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Ab</translation>
    </message>
    <message>
        <source>Left</source>
        <translation>Links</translation>
    </message>
    <message>
        <source>Right</source>
        <translation>Rechts</translation>
    </message>
</context>
<context>
    <name>QWidgetTextControl</name>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;herstellen</translation>
    </message>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy &amp;Link Location</source>
        <translation>&amp;Link-Adresse kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>Delete</source>
        <translation>Löschen</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Alles auswählen</translation>
    </message>
</context>
<context>
    <name>RunReport</name>
    <message>
        <source>ok</source>
        <translation>ok</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1, %2 rows, %3 s</source>
        <translation>%1, %2 Zeilen, %3 s</translation>
    </message>
</context>
<context>
    <name>ShownValue</name>
    <message>
        <source>(empty)</source>
        <translation>(leer)</translation>
    </message>
</context>
<context>
    <name>kelvarin::ActionChooser</name>
    <message>
        <source>Search actions</source>
        <translation>Aktionen suchen</translation>
    </message>
    <message>
        <source>Enter adds the first action that is found</source>
        <translation>Enter fügt die erste gefundene Aktion hinzu</translation>
    </message>
    <message>
        <source>Actions to add</source>
        <translation>Aktionen zum Hinzufügen</translation>
    </message>
</context>
<context>
    <name>kelvarin::ActionForm</name>
    <message>
        <source>This action has no settings.</source>
        <translation>Diese Aktion hat keine Einstellungen.</translation>
    </message>
    <message>
        <source>Values: %1.</source>
        <translation>Werte: %1.</translation>
    </message>
    <message>
        <source>%1 Default: &quot;%2&quot;.</source>
        <translation>%1 Vorgabe: &quot;%2&quot;.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ActionGroup</name>
    <message>
        <source>Input</source>
        <translation>Eingabe</translation>
    </message>
    <message>
        <source>Output</source>
        <translation>Ausgabe</translation>
    </message>
    <message>
        <source>Other</source>
        <translation>Andere</translation>
    </message>
</context>
<context>
    <name>kelvarin::ActionList</name>
    <message>
        <source>Actions of the graph</source>
        <translation>Aktionen des Graphen</translation>
    </message>
    <message>
        <source>&amp;Actions</source>
        <translation>A&amp;ktionen</translation>
    </message>
    <message>
        <source>Search names and types</source>
        <translation>Namen und Typen suchen</translation>
    </message>
    <message>
        <source>Search actions</source>
        <translation>Aktionen suchen</translation>
    </message>
</context>
<context>
    <name>kelvarin::ActionListModel</name>
    <message>
        <source>%1, %2, changed</source>
        <translation>%1, %2, geändert</translation>
    </message>
</context>
<context>
    <name>kelvarin::Arrangement</name>
    <message>
        <source>Nothing was moved: no layout was found within a minute. Arrange a part of the graph: select its actions first.</source>
        <translation>Nichts wurde verschoben: Innerhalb einer Minute fand sich keine Anordnung. Einen Teil des Graphen anordnen: zuerst seine Aktionen auswählen.</translation>
    </message>
    <message>
        <source>Nothing was moved: Graphviz found no layout for this graph. Arrange a part of it: select its actions first.</source>
        <translation>Nichts wurde verschoben: Graphviz fand keine Anordnung für diesen Graphen. Einen Teil davon anordnen: zuerst seine Aktionen auswählen.</translation>
    </message>
    <message>
        <source>Nothing was moved: arranging needs Graphviz and the program %1, which lies beside the program&apos;s libraries. Install Graphviz (on Debian: apt install libgvc6) and, if the program is not there, install this product again.</source>
        <translation>Nichts wurde verschoben: Das Anordnen braucht Graphviz und das Programm %1, das neben den Bibliotheken des Programms liegt. Graphviz installieren (unter Debian: apt install libgvc6) und, falls das Programm fehlt, dieses Produkt neu installieren.</translation>
    </message>
</context>
<context>
    <name>kelvarin::BackgroundTask</name>
    <message>
        <source>The memory does not suffice.</source>
        <translation>Der Speicher reicht nicht aus.</translation>
    </message>
</context>
<context>
    <name>kelvarin::BlockFilterPage</name>
    <message>
        <source>Blocks that are read</source>
        <translation>Blöcke, die gelesen werden</translation>
    </message>
    <message>
        <source>&amp;Skip the blocks for which this expression is false:</source>
        <translation>Blöcke ü&amp;berspringen, für die dieser Ausdruck falsch ist:</translation>
    </message>
    <message>
        <source>Block filter</source>
        <translation>Blockfilter</translation>
    </message>
    <message>
        <source>Blocks read ahead</source>
        <translation>Im Voraus gelesene Blöcke</translation>
    </message>
    <message>
        <source>Decoded on other threads while rows are computed; 0: none.</source>
        <translation>Werden in anderen Threads dekodiert, während Zeilen berechnet werden; 0: keine.</translation>
    </message>
    <message>
        <source>What the expression knows of a block</source>
        <translation>Was der Ausdruck von einem Block weiß</translation>
    </message>
    <message>
        <source>Variables of the block filter</source>
        <translation>Variablen des Blockfilters</translation>
    </message>
    <message>
        <source>Column of the file</source>
        <translation>Spalte der Datei</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Entfernen</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>add &apos;_n_min&apos; and &apos;_n_max&apos; as input vars</source>
        <translation>&apos;_n_min&apos; und &apos;_n_max&apos; als Eingabevariablen anbieten</translation>
    </message>
    <message>
        <source>The numbers of the block&apos;s first and last row, from 0.</source>
        <translation>Die Nummern der ersten und letzten Zeile des Blocks, ab 0.</translation>
    </message>
    <message>
        <source>&amp;Dates and times</source>
        <translation>&amp;Datum und Zeit</translation>
    </message>
    <message>
        <source>Blocks &amp;read ahead:</source>
        <translation>Im &amp;Voraus gelesene Blöcke:</translation>
    </message>
    <message>
        <source>The first blocks of the file</source>
        <translation>Die ersten Blöcke der Datei</translation>
    </message>
</context>
<context>
    <name>kelvarin::BlockValuesModel</name>
    <message>
        <source>%1 to %2</source>
        <translation>%1 bis %2</translation>
    </message>
    <message>
        <source>skipped</source>
        <translation>übersprungen</translation>
    </message>
    <message>
        <source>read</source>
        <translation>gelesen</translation>
    </message>
    <message>
        <source>Read in any case, since its statistics say nothing about its values.</source>
        <translation>Wird in jedem Fall gelesen, da seine Statistik nichts über seine Werte sagt.</translation>
    </message>
    <message>
        <source>unknown</source>
        <translation>unbekannt</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Block</source>
        <translation>Block</translation>
    </message>
</context>
<context>
    <name>kelvarin::BlockVariablesModel</name>
    <message>
        <source>Number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>The file has no column &apos;%1&apos;.</source>
        <translation>Die Datei hat keine Spalte &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>The column &apos;%1&apos; holds texts: choose Text, or Date.</source>
        <translation>Die Spalte &apos;%1&apos; enthält Texte: wählen Sie Text oder Datum.</translation>
    </message>
    <message>
        <source>The column; it need not be among those that are read.</source>
        <translation>Die Spalte; sie muss nicht unter den gelesenen sein.</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>What the expression gets: dates enter as elapsed times.</source>
        <translation>Was der Ausdruck bekommt: Daten kommen als verstrichene Zeiten an.</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Name of the largest value of a block.</source>
        <translation>Name des größten Wertes eines Blocks.</translation>
    </message>
    <message>
        <source>Largest</source>
        <translation>Größter</translation>
    </message>
    <message>
        <source>Name of the smallest value of a block.</source>
        <translation>Name des kleinsten Wertes eines Blocks.</translation>
    </message>
    <message>
        <source>Smallest</source>
        <translation>Kleinster</translation>
    </message>
    <message>
        <source>Name for 1 where a block has nulls, else 0.</source>
        <translation>Name für 1, wo ein Block NULL enthält, sonst 0.</translation>
    </message>
    <message>
        <source>Has nulls</source>
        <translation>Hat NULL</translation>
    </message>
    <message>
        <source>The largest value with which a check evaluates.</source>
        <translation>Der größte Wert, mit dem eine Prüfung auswertet.</translation>
    </message>
    <message>
        <source>Sample largest</source>
        <translation>Beispiel größter</translation>
    </message>
    <message>
        <source>The smallest value with which a check evaluates.</source>
        <translation>Der kleinste Wert, mit dem eine Prüfung auswertet.</translation>
    </message>
    <message>
        <source>Sample smallest</source>
        <translation>Beispiel kleinster</translation>
    </message>
</context>
<context>
    <name>kelvarin::CallTipWindow</name>
    <message>
        <source>How the function is called</source>
        <translation>Wie die Funktion aufgerufen wird</translation>
    </message>
</context>
<context>
    <name>kelvarin::CanvasMenus</name>
    <message>
        <source>Cu&amp;t</source>
        <translation>&amp;Ausschneiden</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>&amp;Paste</source>
        <translation>&amp;Einfügen</translation>
    </message>
    <message>
        <source>&amp;Duplicate</source>
        <translation>&amp;Verdoppeln</translation>
    </message>
    <message>
        <source>D&amp;elete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>Delete and close the &amp;gap</source>
        <translation>Löschen und Lücke s&amp;chließen</translation>
    </message>
    <message>
        <source>Select &amp;all</source>
        <translation>Alles aus&amp;wählen</translation>
    </message>
    <message>
        <source>Pre&amp;view</source>
        <translation>&amp;Vorschau</translation>
    </message>
    <message>
        <source>Re&amp;name</source>
        <translation>&amp;Umbenennen</translation>
    </message>
    <message>
        <source>Switch on or o&amp;ff</source>
        <translation>E&amp;in- oder ausschalten</translation>
    </message>
    <message>
        <source>Draw a lin&amp;k</source>
        <translation>Verbindung &amp;ziehen</translation>
    </message>
    <message>
        <source>Add a no&amp;te</source>
        <translation>&amp;Notiz anlegen</translation>
    </message>
    <message>
        <source>Note &amp;colour</source>
        <translation>&amp;Farbe der Notiz</translation>
    </message>
    <message>
        <source>&amp;Yellow</source>
        <translation>&amp;Gelb</translation>
    </message>
    <message>
        <source>&amp;Green</source>
        <translation>G&amp;rün</translation>
    </message>
    <message>
        <source>&amp;Blue</source>
        <translation>&amp;Blau</translation>
    </message>
    <message>
        <source>&amp;Pink</source>
        <translation>&amp;Rosa</translation>
    </message>
    <message>
        <source>P&amp;urple</source>
        <translation>&amp;Violett</translation>
    </message>
    <message>
        <source>G&amp;rey</source>
        <translation>Gra&amp;u</translation>
    </message>
    <message>
        <source>Ali&amp;gn</source>
        <translation>Aus&amp;richten</translation>
    </message>
    <message>
        <source>&amp;Left edges</source>
        <translation>&amp;Linke Kanten</translation>
    </message>
    <message>
        <source>&amp;Right edges</source>
        <translation>&amp;Rechte Kanten</translation>
    </message>
    <message>
        <source>&amp;Top edges</source>
        <translation>&amp;Obere Kanten</translation>
    </message>
    <message>
        <source>&amp;Bottom edges</source>
        <translation>&amp;Untere Kanten</translation>
    </message>
    <message>
        <source>Zoom &amp;in</source>
        <translation>Ver&amp;größern</translation>
    </message>
    <message>
        <source>Zoom &amp;out</source>
        <translation>Ver&amp;kleinern</translation>
    </message>
    <message>
        <source>&amp;100 %</source>
        <translation>&amp;100 %</translation>
    </message>
    <message>
        <source>&amp;Whole graph</source>
        <translation>&amp;Ganzer Graph</translation>
    </message>
    <message>
        <source>What is &amp;selected</source>
        <translation>Das Aus&amp;gewählte</translation>
    </message>
    <message>
        <source>&amp;Heat map of the last run</source>
        <translation>&amp;Wärmebild des letzten Laufs</translation>
    </message>
    <message>
        <source>&amp;Off</source>
        <translation>&amp;Aus</translation>
    </message>
    <message>
        <source>&amp;Time of each action</source>
        <translation>&amp;Zeit jeder Aktion</translation>
    </message>
    <message>
        <source>&amp;Rows of each action</source>
        <translation>Z&amp;eilen jeder Aktion</translation>
    </message>
</context>
<context>
    <name>kelvarin::CanvasView</name>
    <message>
        <source>Note: %1</source>
        <translation>Notiz: %1</translation>
    </message>
    <message>
        <source>Graph</source>
        <translation>Graph</translation>
    </message>
    <message>
        <source>Canvas</source>
        <translation>Zeichenfläche</translation>
    </message>
    <message>
        <source>Colour notes</source>
        <translation>Notizen färben</translation>
    </message>
    <message>
        <source>&apos;%1&apos;, pin %2</source>
        <translation>&apos;%1&apos;, Anschluss %2</translation>
    </message>
    <message>
        <source>Select an action with an output first; the link begins there.</source>
        <translation>Zuerst eine Aktion mit einem Ausgang auswählen; dort beginnt die Verbindung.</translation>
    </message>
    <message>
        <source>No pin can take a link from %1.</source>
        <translation>Kein Anschluss kann eine Verbindung von %1 aufnehmen.</translation>
    </message>
    <message>
        <source>Link from %1 to %2: Enter links, Tab goes to the next pin, Esc cancels.</source>
        <translation>Verbindung von %1 nach %2: Enter verbindet, Tab geht zum nächsten Anschluss, Esc bricht ab.</translation>
    </message>
    <message>
        <source>A link ends at an input pin of another action.</source>
        <translation>Eine Verbindung endet an einem Eingang einer anderen Aktion.</translation>
    </message>
    <message>
        <source>A link comes from an output pin of another action.</source>
        <translation>Eine Verbindung kommt von einem Ausgang einer anderen Aktion.</translation>
    </message>
    <message>
        <source>Move link</source>
        <translation>Verbindung verschieben</translation>
    </message>
    <message>
        <source>Insert &apos;%1&apos;</source>
        <translation>&apos;%1&apos; einfügen</translation>
    </message>
    <message>
        <source>%1 %</source>
        <translation>%1 %</translation>
    </message>
    <message>
        <source>waiting</source>
        <translation>wartet</translation>
    </message>
    <message>
        <source>running</source>
        <translation>läuft</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>an absent action</source>
        <translation>eine fehlende Aktion</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>1 row</source>
        <translation>1 Zeile</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 Zeilen</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>%1 min %2 s</source>
        <translation>%1 min %2 s</translation>
    </message>
    <message>
        <source>cannot run</source>
        <translation>kann nicht laufen</translation>
    </message>
    <message>
        <source>switched off</source>
        <translation>ausgeschaltet</translation>
    </message>
    <message>
        <source>cannot run: %1</source>
        <translation>kann nicht laufen: %1</translation>
    </message>
    <message>
        <source>changed since the last run</source>
        <translation>seit dem letzten Lauf geändert</translation>
    </message>
    <message>
        <source>reads from %1</source>
        <translation>liest von %1</translation>
    </message>
    <message>
        <source>feeds %1</source>
        <translation>liefert an %1</translation>
    </message>
    <message>
        <source>Switched off: rows go through unchanged.</source>
        <translation>Ausgeschaltet: Zeilen laufen unverändert durch.</translation>
    </message>
    <message>
        <source>The graph has changed since.</source>
        <translation>Der Graph wurde seither geändert.</translation>
    </message>
    <message>
        <source>%1 to %2</source>
        <translation>%1 nach %2</translation>
    </message>
    <message>
        <source>Output %1</source>
        <translation>Ausgang %1</translation>
    </message>
    <message>
        <source>Input %1</source>
        <translation>Eingang %1</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Drag from here to draw a link.</source>
        <translation>Von hier ziehen, um eine Verbindung zu zeichnen.</translation>
    </message>
    <message>
        <source>Next action, in the order of reading</source>
        <translation>Nächste Aktion in Leserichtung</translation>
    </message>
    <message>
        <source>Along the links; left, up and down as well</source>
        <translation>Die Verbindungen entlang; ebenso nach links, oben und unten</translation>
    </message>
    <message>
        <source>Select along the links</source>
        <translation>Entlang der Verbindungen auswählen</translation>
    </message>
    <message>
        <source>To a link of the action</source>
        <translation>Zu einer Verbindung der Aktion</translation>
    </message>
    <message>
        <source>Move what is selected</source>
        <translation>Das Ausgewählte verschieben</translation>
    </message>
    <message>
        <source>Open the action, or edit the note</source>
        <translation>Aktion öffnen oder Notiz bearbeiten</translation>
    </message>
    <message>
        <source>Give up what was begun, or the selection</source>
        <translation>Begonnenes oder die Auswahl aufgeben</translation>
    </message>
    <message>
        <source>Hold it down to move about with the mouse</source>
        <translation>Gedrückt halten, um sich mit der Maus zu bewegen</translation>
    </message>
    <message>
        <source>%1, %2 %</source>
        <translation>%1, %2 %</translation>
    </message>
</context>
<context>
    <name>kelvarin::ColumnSetsModel</name>
    <message>
        <source>The column &apos;%1&apos; does not reach this action.</source>
        <translation>Die Spalte &apos;%1&apos; erreicht diese Aktion nicht.</translation>
    </message>
    <message>
        <source>not written</source>
        <translation>nicht geschrieben</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Satz</translation>
    </message>
</context>
<context>
    <name>kelvarin::ColumnTypeDelegate</name>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>As found</source>
        <translation>Wie gefunden</translation>
    </message>
    <message>
        <source>%1 (found)</source>
        <translation>%1 (gefunden)</translation>
    </message>
</context>
<context>
    <name>kelvarin::ColumnarEditor</name>
    <message>
        <source>Groups of settings</source>
        <translation>Gruppen von Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
</context>
<context>
    <name>kelvarin::ColumnarTexts</name>
    <message>
        <source>%1 row</source>
        <translation>%1 Zeile</translation>
    </message>
    <message>
        <source>%1 rows</source>
        <translation>%1 Zeilen</translation>
    </message>
    <message>
        <source>%1 block</source>
        <translation>%1 Block</translation>
    </message>
    <message>
        <source>%1 blocks</source>
        <translation>%1 Blöcke</translation>
    </message>
    <message>
        <source>%1 column</source>
        <translation>%1 Spalte</translation>
    </message>
    <message>
        <source>%1 columns</source>
        <translation>%1 Spalten</translation>
    </message>
    <message>
        <source>%1 column set</source>
        <translation>%1 Spaltensatz</translation>
    </message>
    <message>
        <source>%1 column sets</source>
        <translation>%1 Spaltensätze</translation>
    </message>
    <message>
        <source>The column-set file &apos;%1&apos; cannot be opened. Put it beside the main file.</source>
        <translation>Die Spaltensatz-Datei &apos;%1&apos; lässt sich nicht öffnen. Legen Sie sie neben die Hauptdatei.</translation>
    </message>
    <message>
        <source>Damaged: the file is cut after %1. Salvage writes what is whole to a new table.</source>
        <translation>Beschädigt: die Datei ist nach %1 abgeschnitten. Retten schreibt, was heil ist, in eine neue Tabelle.</translation>
    </message>
    <message>
        <source>Damaged: %1 cannot be read. Verify shows where; Salvage writes what is whole to a new table.</source>
        <translation>Beschädigt: %1 nicht lesbar. Prüfen zeigt, wo; Retten schreibt, was heil ist, in eine neue Tabelle.</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>%1 of up to %2</source>
        <translation>%1 mit bis zu %2</translation>
    </message>
    <message>
        <source>Sorted on &apos;%1&apos;, descending</source>
        <translation>Nach &apos;%1&apos; sortiert, absteigend</translation>
    </message>
    <message>
        <source>Sorted on &apos;%1&apos;, ascending</source>
        <translation>Nach &apos;%1&apos; sortiert, aufsteigend</translation>
    </message>
    <message>
        <source>Incomplete: its writer is at work. What is finished can be read already.</source>
        <translation>Unvollständig: sie wird gerade geschrieben. Was fertig ist, kann schon gelesen werden.</translation>
    </message>
    <message>
        <source>Incomplete: its writer was stopped. Salvage writes what is whole to a new table.</source>
        <translation>Unvollständig: das Schreiben wurde abgebrochen. Retten schreibt, was heil ist, in eine neue Tabelle.</translation>
    </message>
    <message>
        <source>Complete</source>
        <translation>Vollständig</translation>
    </message>
    <message>
        <source>skips %1 of %2 of this file</source>
        <translation>überspringt %1 von %2 dieser Datei</translation>
    </message>
    <message>
        <source>%1; damaged blocks are not counted</source>
        <translation>%1; beschädigte Blöcke zählen nicht</translation>
    </message>
    <message>
        <source>%1: no row is left</source>
        <translation>%1: keine Zeile bleibt übrig</translation>
    </message>
    <message>
        <source>%1, and reads %2</source>
        <translation>%1 und liest %2</translation>
    </message>
    <message>
        <source>%1 in %2 were checked</source>
        <translation>%1 in %2 geprüft</translation>
    </message>
    <message>
        <source>%2: %1 damaged position.</source>
        <translation>%2: %1 beschädigte Stelle.</translation>
    </message>
    <message>
        <source>%2: %1 damaged positions.</source>
        <translation>%2: %1 beschädigte Stellen.</translation>
    </message>
    <message>
        <source>Salvage writes what is whole to a new table.</source>
        <translation>Retten schreibt, was heil ist, in eine neue Tabelle.</translation>
    </message>
    <message>
        <source>%1: no damage, but the file is incomplete.</source>
        <translation>%1: kein Schaden, aber die Datei ist unvollständig.</translation>
    </message>
    <message>
        <source>%1: no damage.</source>
        <translation>%1: kein Schaden.</translation>
    </message>
    <message>
        <source>There is no whole block of rows, so nothing was written.</source>
        <translation>Kein Block von Zeilen ist heil, deshalb wurde nichts geschrieben.</translation>
    </message>
    <message>
        <source>%1 in %2 were written to &apos;%3&apos;.</source>
        <translation>%1 in %2 wurden nach &apos;%3&apos; geschrieben.</translation>
    </message>
    <message>
        <source>Of them, %1 had no sound descriptor and came from the column-set files alone.</source>
        <translation>Davon hatten %1 keine heile Beschreibung und kamen allein aus den Spaltensatz-Dateien.</translation>
    </message>
    <message>
        <source>%1 with %2 are lost.</source>
        <translation>%1 mit %2 sind verloren.</translation>
    </message>
    <message>
        <source>Some rows are lost where no descriptor counts them; those before and after them now follow one another.</source>
        <translation>Einige Zeilen sind verloren, wo keine Beschreibung sie zählt; die davor und dahinter folgen nun aufeinander.</translation>
    </message>
    <message>
        <source>A block that the writer had not finished was not taken.</source>
        <translation>Ein Block, der nicht fertig geschrieben war, wurde nicht übernommen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ColumnsToReadModel</name>
    <message>
        <source>The file has no column &apos;%1&apos;.</source>
        <translation>Die Datei hat keine Spalte &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Stored</source>
        <translation>Gespeichert</translation>
    </message>
    <message>
        <source>Set</source>
        <translation>Satz</translation>
    </message>
</context>
<context>
    <name>kelvarin::CommittedVerdict</name>
    <message>
        <source>Check the expression</source>
        <translation>Ausdruck prüfen</translation>
    </message>
</context>
<context>
    <name>kelvarin::CompletionPopup</name>
    <message>
        <source>Completions</source>
        <translation>Ergänzungen</translation>
    </message>
</context>
<context>
    <name>kelvarin::CsvSettingsFields</name>
    <message>
        <source>Comma  ,</source>
        <translation>Komma  ,</translation>
    </message>
    <message>
        <source>Semicolon  ;</source>
        <translation>Semikolon  ;</translation>
    </message>
    <message>
        <source>Tab  \t</source>
        <translation>Tabulator  \t</translation>
    </message>
    <message>
        <source>Bar  |</source>
        <translation>Senkrechter Strich  |</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Leerzeichen</translation>
    </message>
    <message>
        <source>Double quote  &quot;</source>
        <translation>Doppeltes Anführungszeichen  &quot;</translation>
    </message>
    <message>
        <source>Single quote  &apos;</source>
        <translation>Einfaches Anführungszeichen  &apos;</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keines</translation>
    </message>
    <message>
        <source>(empty field)</source>
        <translation>(leeres Feld)</translation>
    </message>
    <message>
        <source>As the file seems to have it</source>
        <translation>Wie es die Datei zu haben scheint</translation>
    </message>
    <message>
        <source>Point  .</source>
        <translation>Punkt  .</translation>
    </message>
    <message>
        <source>Nothing</source>
        <translation>Nichts</translation>
    </message>
    <message>
        <source>Apostrophe  &apos;</source>
        <translation>Apostroph  &apos;</translation>
    </message>
    <message>
        <source>Stop the run</source>
        <translation>Halten den Lauf an</translation>
    </message>
    <message>
        <source>Get nulls</source>
        <translation>Werden mit Nullwerten gefüllt</translation>
    </message>
    <message>
        <source>Lose what is too much</source>
        <translation>Verlieren, was zu viel ist</translation>
    </message>
</context>
<context>
    <name>kelvarin::DebuggerControls</name>
    <message>
        <source>&amp;Pause</source>
        <translation>Paus&amp;e</translation>
    </message>
    <message>
        <source>The row before (Shift+F10)</source>
        <translation>Die Zeile davor (Umschalt+F10)</translation>
    </message>
    <message>
        <source>The row after (Ctrl+Shift+F10)</source>
        <translation>Die Zeile danach (Strg+Umschalt+F10)</translation>
    </message>
    <message>
        <source>&amp;Element:</source>
        <translation>Ele&amp;ment:</translation>
    </message>
    <message>
        <source>Element of the vectors</source>
        <translation>Element der Vektoren</translation>
    </message>
    <message>
        <source>&amp;Breakpoint where</source>
        <translation>Hal&amp;tepunkt, wo</translation>
    </message>
    <message>
        <source>Condition of the breakpoint</source>
        <translation>Bedingung des Haltepunkts</translation>
    </message>
    <message>
        <source>price &gt; 100</source>
        <translation>preis &gt; 100</translation>
    </message>
    <message>
        <source>&amp;Run to:</source>
        <translation>&amp;Weiter bis:</translation>
    </message>
    <message>
        <source>the breakpoint</source>
        <translation>zum Haltepunkt</translation>
    </message>
    <message>
        <source>row number</source>
        <translation>Zeile Nummer</translation>
    </message>
    <message>
        <source>the next error</source>
        <translation>zum nächsten Fehler</translation>
    </message>
    <message>
        <source>the next null or NaN</source>
        <translation>zum nächsten null oder NaN</translation>
    </message>
    <message>
        <source>the end</source>
        <translation>zum Ende</translation>
    </message>
    <message>
        <source>Where the run stops next</source>
        <translation>Wo der Lauf als nächstes anhält</translation>
    </message>
    <message>
        <source>Number of the row, counted from 0</source>
        <translation>Nummer der Zeile, gezählt ab 0</translation>
    </message>
    <message>
        <source>Run (Ctrl+F10)</source>
        <translation>Weiter (Strg+F10)</translation>
    </message>
    <message>
        <source>Switch To Expert Mode to Activate</source>
        <translation>Zum Einschalten in den Expertenmodus wechseln</translation>
    </message>
    <message>
        <source>F5 starts, and goes on to the breakpoint; Shift+F5 stops</source>
        <translation>F5 startet und läuft weiter bis zum Haltepunkt; Umschalt+F5 beendet</translation>
    </message>
    <message>
        <source>Stops where the condition is true (F9). It may use the variables and the results of the row.</source>
        <translation>Hält an, wo die Bedingung wahr ist (F9). Sie kann die Variablen und die Ergebnisse der Zeile verwenden.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DebuggerPanel</name>
    <message>
        <source>This action cannot be run here. The log says why.</source>
        <translation>Diese Aktion kann hier nicht laufen. Den Grund nennt das Protokoll.</translation>
    </message>
    <message>
        <source>Start shows the first row of the input, and stops there.</source>
        <translation>Der Start zeigt die erste Zeile der Eingabe und hält dort an.</translation>
    </message>
    <message>
        <source>A run without the debugger gives another value: %1 by the %2, %3 by the String Parser that is shown here.</source>
        <translation>Ein Lauf ohne den Schritt-Debugger ergibt einen anderen Wert: %1 durch %2, %3 durch den String Parser, der hier gezeigt wird.</translation>
    </message>
    <message>
        <source>The parts are shown with the edited values. The data stay as they are.</source>
        <translation>Die Teile sind mit den geänderten Werten gezeigt. Die Daten bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>Use the row&apos;s own values</source>
        <translation>Die Werte der Zeile selbst verwenden</translation>
    </message>
    <message>
        <source>A debug run does not read the table of variables, so these are missing: %1.</source>
        <translation>Der Schritt-Debugger liest die Tabelle der Variablen nicht, daher fehlen diese: %1.</translation>
    </message>
    <message>
        <source>Read the table once and take its variables over</source>
        <translation>Die Tabelle einmal lesen und ihre Variablen übernehmen</translation>
    </message>
    <message>
        <source>Debug: start, or go on</source>
        <translation>Debuggen: starten oder weiterlaufen</translation>
    </message>
    <message>
        <source>Debug: stop</source>
        <translation>Debuggen: beenden</translation>
    </message>
    <message>
        <source>Debug: next row</source>
        <translation>Debuggen: nächste Zeile</translation>
    </message>
    <message>
        <source>Debug: back in the last rows</source>
        <translation>Debuggen: in den letzten Zeilen zurück</translation>
    </message>
    <message>
        <source>Debug: forth in the last rows</source>
        <translation>Debuggen: in den letzten Zeilen vor</translation>
    </message>
    <message>
        <source>Debug: run to a row, an error or a null</source>
        <translation>Debuggen: weiter bis zu einer Zeile, einem Fehler oder Null</translation>
    </message>
    <message>
        <source>Debug: breakpoint</source>
        <translation>Debuggen: Haltepunkt</translation>
    </message>
    <message>
        <source>Stopping: the run ends as soon as its source answers.</source>
        <translation>Der Lauf wird beendet, sobald seine Quelle antwortet.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DebuggerViews</name>
    <message>
        <source>This row and the rows that went by</source>
        <translation>Diese Zeile und die vorigen</translation>
    </message>
    <message>
        <source>This Row</source>
        <translation>Diese Zeile</translation>
    </message>
    <message>
        <source>Last Rows</source>
        <translation>Letzte Zeilen</translation>
    </message>
    <message>
        <source>Variables of the row; a value can be edited</source>
        <translation>Variablen der Zeile; ein Wert lässt sich ändern</translation>
    </message>
    <message>
        <source>Parts of the expression with their values</source>
        <translation>Teile des Ausdrucks mit ihren Werten</translation>
    </message>
    <message>
        <source>The last rows, up to %1</source>
        <translation>Die letzten Zeilen, bis zu %1</translation>
    </message>
    <message>
        <source>&amp;Copy as CSV</source>
        <translation>Als &amp;CSV kopieren</translation>
    </message>
    <message>
        <source>Results of the row</source>
        <translation>Ergebnisse der Zeile</translation>
    </message>
</context>
<context>
    <name>kelvarin::DesignColumns</name>
    <message>
        <source>Not checked: reading the table of variables that it depends on takes too long. Run the graph to see its columns.</source>
        <translation>Nicht geprüft: Die Tabelle der Variablen zu lesen, von der die Aktion abhängt, dauert zu lange. Den Graphen ausführen, um ihre Spalten zu sehen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DifferenceTexts</name>
    <message>
        <source>What differs</source>
        <translation>Was sich unterscheidet</translation>
    </message>
    <message>
        <source>Lines of both versions</source>
        <translation>Zeilen beider Fassungen</translation>
    </message>
    <message>
        <source>- is in the file on the disk, + is in this window.</source>
        <translation>- steht in der Datei auf der Festplatte, + in diesem Fenster.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DirectEditor</name>
    <message>
        <source>Name of the action</source>
        <translation>Name der Aktion</translation>
    </message>
    <message>
        <source>Text of the note</source>
        <translation>Text der Notiz</translation>
    </message>
    <message>
        <source>An action needs a name.</source>
        <translation>Eine Aktion braucht einen Namen.</translation>
    </message>
    <message>
        <source>There is another action named &apos;%1&apos;. Choose another name.</source>
        <translation>Eine andere Aktion heißt schon &apos;%1&apos;. Einen anderen Namen wählen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DiscardEditor</name>
    <message>
        <source>Rows are read and counted here, and kept nowhere. There is nothing to set.</source>
        <translation>Zeilen werden hier gelesen und gezählt und nirgends aufbewahrt. Es gibt nichts einzustellen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::DiskQuestionLine</name>
    <message>
        <source>The disk is still full, and the run waits: %1 more are needed for %2. Free more space on its disk, then try again.</source>
        <translation>Der Datenträger ist noch immer voll, und der Lauf wartet: Für %2 fehlen %1. Schaffen Sie dort mehr Platz und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>The disk is full, and the run waits: %1 more are needed for %2. Free some space on its disk, then try again.</source>
        <translation>Der Datenträger ist voll, und der Lauf wartet: Für %2 fehlen %1. Schaffen Sie dort Platz und versuchen Sie es dann erneut.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Erneut versuchen</translation>
    </message>
    <message>
        <source>Stop the run</source>
        <translation>Lauf anhalten</translation>
    </message>
</context>
<context>
    <name>kelvarin::DocumentFile</name>
    <message>
        <source>Somebody</source>
        <translation>Jemand</translation>
    </message>
    <message>
        <source>%1 has it open</source>
        <translation>%1 hat ihn geöffnet</translation>
    </message>
    <message>
        <source>%1 has it open on %2 (%3, process %4)</source>
        <translation>%1 hat ihn auf %2 geöffnet (%3, Prozess %4)</translation>
    </message>
    <message>
        <source>%1 cannot be replaced. %2.</source>
        <translation>%1 kann nicht ersetzt werden. %2.</translation>
    </message>
</context>
<context>
    <name>kelvarin::EditServices</name>
    <message numerus="yes">
        <source>%n more line(s) came at once and are not shown.</source>
        <translation>
            <numerusform>%n weitere Zeile kam zugleich und wird nicht gezeigt.</numerusform>
            <numerusform>%n weitere Zeilen kamen zugleich und werden nicht gezeigt.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>kelvarin::EditWindow</name>
    <message>
        <source>Reading %1 ...</source>
        <translation>%1 wird gelesen ...</translation>
    </message>
    <message>
        <source>The check found no error.</source>
        <translation>Die Prüfung hat keinen Fehler gefunden.</translation>
    </message>
    <message>
        <source>The check found errors: see the log.</source>
        <translation>Die Prüfung hat Fehler gefunden: siehe Protokoll.</translation>
    </message>
    <message>
        <source>%1 is computed by: %2</source>
        <translation>%1 wird berechnet mit: %2</translation>
    </message>
    <message>
        <source>This graph has no actions yet.</source>
        <translation>Dieser Graph hat noch keine Aktionen.</translation>
    </message>
    <message>
        <source>Choose an action at the left to edit its properties.</source>
        <translation>Wählen Sie links eine Aktion, um ihre Eigenschaften zu bearbeiten.</translation>
    </message>
    <message>
        <source>The graph has no action &apos;%1&apos;. Choose one at the left.</source>
        <translation>Der Graph hat keine Aktion &apos;%1&apos;. Wählen Sie links eine.</translation>
    </message>
    <message>
        <source>The graph has no action &apos;%1&apos;. Did you mean &apos;%2&apos;?</source>
        <translation>Der Graph hat keine Aktion &apos;%1&apos;. Meinten Sie &apos;%2&apos;?</translation>
    </message>
    <message>
        <source>%1[*] - %2</source>
        <translation>%1[*] - %2</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>There is no help page &quot;%1&quot;.</source>
        <translation>Es gibt keine Hilfeseite &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Checking the graph ...</source>
        <translation>Der Graph wird geprüft ...</translation>
    </message>
    <message>
        <source>&amp;Graph</source>
        <translation>&amp;Graph</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Neu laden</translation>
    </message>
    <message>
        <source>Read the graph from its file again</source>
        <translation>Den Graphen erneut aus seiner Datei lesen</translation>
    </message>
    <message>
        <source>&amp;Check</source>
        <translation>&amp;Prüfen</translation>
    </message>
    <message>
        <source>Find the faults of the graph without running it</source>
        <translation>Fehler des Graphen finden, ohne ihn auszuführen</translation>
    </message>
    <message>
        <source>C&amp;lose</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>&amp;Expert mode</source>
        <translation>&amp;Expertenmodus</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;This action</source>
        <translation>&amp;Diese Aktion</translation>
    </message>
    <message>
        <source>&amp;Keyboard</source>
        <translation>&amp;Tastatur</translation>
    </message>
    <message>
        <source>Graph</source>
        <translation>Graph</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 gespeichert.</translation>
    </message>
    <message>
        <source>Reading the file again discards your changes.</source>
        <translation>Erneutes Lesen der Datei verwirft Ihre Änderungen.</translation>
    </message>
    <message>
        <source>&amp;Discard and read</source>
        <translation>&amp;Verwerfen und lesen</translation>
    </message>
    <message>
        <source>%1 (output %2)</source>
        <translation>%1 (Ausgabe %2)</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>&amp;Undo</source>
        <translation>&amp;Rückgängig</translation>
    </message>
    <message>
        <source>&amp;Redo</source>
        <translation>Wieder&amp;herstellen</translation>
    </message>
    <message>
        <source>&amp;Undo: %1</source>
        <translation>&amp;Rückgängig: %1</translation>
    </message>
    <message>
        <source>&amp;Redo: %1</source>
        <translation>Wieder&amp;herstellen: %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::EditorOfOtherBuild</name>
    <message>
        <source>The property editors cannot be shown: libKelvarinEditors.so is not of the same build as libKelvarinMathParser.so beside it. Install both from one build, and start again. The graph and its actions are not affected.</source>
        <translation>Die Editoren können nicht gezeigt werden: libKelvarinEditors.so stammt nicht aus demselben Build wie libKelvarinMathParser.so daneben. Installieren Sie beide aus einem Build und starten Sie neu. Der Graph und seine Aktionen sind nicht betroffen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ElementTree</name>
    <message>
        <source>Elements</source>
        <translation>Elemente</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Meaning</source>
        <translation>Bedeutung</translation>
    </message>
    <message>
        <source>&amp;Elements</source>
        <translation>&amp;Elemente</translation>
    </message>
    <message>
        <source>Add an element</source>
        <translation>Element hinzufügen</translation>
    </message>
    <message>
        <source>Add an element at the end, or inside the chosen one</source>
        <translation>Fügt ein Element am Ende oder im gewählten Element hinzu</translation>
    </message>
    <message>
        <source>Remove the element</source>
        <translation>Element entfernen</translation>
    </message>
    <message>
        <source>Remove the chosen element</source>
        <translation>Das gewählte Element entfernen</translation>
    </message>
    <message>
        <source>%1 in this %2</source>
        <translation>%1 in diesem %2</translation>
    </message>
</context>
<context>
    <name>kelvarin::EmptyCanvas</name>
    <message>
        <source>Type the first letters of an action, drag one here from the list, or drop a data file.</source>
        <translation>Tippen Sie die ersten Buchstaben einer Aktion, ziehen Sie eine aus der Liste hierher, oder lassen Sie eine Datendatei fallen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::EvaluationPage</name>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>&amp;Truncate table on first failed row</source>
        <translation>&amp;Tabelle bei der ersten nicht erfüllten Zeile abschneiden</translation>
    </message>
    <message>
        <source>The first row for which the expression is false still goes to the second pin; no further row is read.</source>
        <translation>Die erste Zeile, für die der Ausdruck falsch ist, geht noch an den zweiten Anschluss; danach wird keine Zeile mehr gelesen.</translation>
    </message>
    <message>
        <source>Row Number</source>
        <translation>Zeilennummer</translation>
    </message>
    <message>
        <source>add &apos;_n&apos; as input var</source>
        <translation>&apos;_n&apos; als Eingabevariable anbieten</translation>
    </message>
    <message>
        <source>The first row has the number 0.</source>
        <translation>Die erste Zeile hat die Nummer 0.</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>In case of Error during &amp;Runtime:</source>
        <translation>Bei einem Fehler während des &amp;Laufs:</translation>
    </message>
    <message>
        <source>Abort the graph Execution</source>
        <translation>Den Lauf des Graphen abbrechen</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>Use &amp;JIT Compiler</source>
        <translation>&amp;JIT-Compiler verwenden</translation>
    </message>
    <message>
        <source>Numeric expressions are compiled to native code where they can be.</source>
        <translation>Ausdrücke mit Zahlen werden in Maschinencode übersetzt, wo das möglich ist.</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>A result out of the range of keys:</source>
        <translation>Ein Ergebnis außerhalb des Bereichs der Schlüssel:</translation>
    </message>
    <message>
        <source>A result with a fraction, for a key:</source>
        <translation>Ein Ergebnis mit Nachkommastellen, für einen Schlüssel:</translation>
    </message>
    <message>
        <source>A null key that is read from a column:</source>
        <translation>Ein fehlender Schlüssel, der aus einer Spalte gelesen wird:</translation>
    </message>
    <message>
        <source>becomes the key 0</source>
        <translation>wird der Schlüssel 0</translation>
    </message>
    <message>
        <source>becomes the null key</source>
        <translation>wird der fehlende Schlüssel</translation>
    </message>
    <message>
        <source>stops the run</source>
        <translation>bricht den Lauf ab</translation>
    </message>
    <message>
        <source>loses its fraction</source>
        <translation>verliert die Nachkommastellen</translation>
    </message>
    <message>
        <source>is null</source>
        <translation>ist NULL</translation>
    </message>
    <message>
        <source>counts as 0</source>
        <translation>gilt als 0</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExampleCopy</name>
    <message>
        <source>%1 cannot be copied to %2: %3</source>
        <translation>%1 kann nicht nach %2 kopiert werden: %3</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExampleTrial</name>
    <message>
        <source>An expression to try</source>
        <translation>Ein Ausdruck zum Ausprobieren</translation>
    </message>
    <message>
        <source>Dates are written %1; elapsed times are days since 2000-01-01.</source>
        <translation>Daten werden %1 geschrieben; verstrichene Zeiten sind Tage seit 2000-01-01.</translation>
    </message>
    <message>
        <source>The value of the expression</source>
        <translation>Der Wert des Ausdrucks</translation>
    </message>
    <message>
        <source>&amp;Try it:</source>
        <translation>Ausp&amp;robieren:</translation>
    </message>
</context>
<context>
    <name>kelvarin::Examples</name>
    <message>
        <source>Late flights</source>
        <translation>Verspätete Flüge</translation>
    </message>
    <message>
        <source>Reads a CSV file, computes speeds and delays, and writes late flights and others apart.</source>
        <translation>Liest eine CSV-Datei, berechnet Geschwindigkeiten und Verspätungen und schreibt verspätete und andere Flüge getrennt.</translation>
    </message>
    <message>
        <source>Sensors</source>
        <translation>Sensoren</translation>
    </message>
    <message>
        <source>Many columns computed by few expressions.</source>
        <translation>Viele Spalten, durch wenige Ausdrücke berechnet.</translation>
    </message>
    <message>
        <source>Columnar file</source>
        <translation>Spaltendatei</translation>
    </message>
    <message>
        <source>Stores a table compactly, block by block.</source>
        <translation>Speichert eine Tabelle kompakt, Block für Block.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExpressionActionEditor</name>
    <message>
        <source>Parts of the editor</source>
        <translation>Teile des Editors</translation>
    </message>
    <message>
        <source>? (F7)</source>
        <translation>? (F7)</translation>
    </message>
    <message>
        <source>Check (F7)</source>
        <translation>Prüfen (F7)</translation>
    </message>
    <message>
        <source>Checks what is written, and shows what is wrong with it.</source>
        <translation>Prüft, was geschrieben ist, und zeigt, was daran falsch ist.</translation>
    </message>
    <message>
        <source>What you change now takes effect at the next Start.</source>
        <translation>Was Sie jetzt ändern, wirkt ab dem nächsten Start.</translation>
    </message>
    <message>
        <source>Settings</source>
        <translation>Einstellungen</translation>
    </message>
    <message>
        <source>Help</source>
        <translation>Hilfe</translation>
    </message>
    <message>
        <source>Check what is written</source>
        <translation>Prüfen, was geschrieben ist</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExpressionCompletion</name>
    <message>
        <source>variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>column, becomes a variable</source>
        <translation>Spalte, wird eine Variable</translation>
    </message>
    <message>
        <source>function</source>
        <translation>Funktion</translation>
    </message>
    <message>
        <source>constant</source>
        <translation>Konstante</translation>
    </message>
    <message>
        <source>graph parameter</source>
        <translation>Parameter des Graphen</translation>
    </message>
    <message>
        <source>for %1</source>
        <translation>für %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExpressionEditor</name>
    <message>
        <source>Expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>For instance: price * quantity</source>
        <translation>Zum Beispiel: Preis * Menge</translation>
    </message>
    <message>
        <source>Complete the word</source>
        <translation>Wort vervollständigen</translation>
    </message>
    <message>
        <source>Show the arguments of the call</source>
        <translation>Argumente des Aufrufs zeigen</translation>
    </message>
    <message>
        <source>Mend the fault</source>
        <translation>Fehler beheben</translation>
    </message>
    <message>
        <source>Help on the word</source>
        <translation>Hilfe zum Wort</translation>
    </message>
    <message>
        <source>Earlier expression</source>
        <translation>Früherer Ausdruck</translation>
    </message>
    <message>
        <source>Later expression</source>
        <translation>Späterer Ausdruck</translation>
    </message>
    <message>
        <source>Larger text</source>
        <translation>Größere Schrift</translation>
    </message>
    <message>
        <source>Smaller text</source>
        <translation>Kleinere Schrift</translation>
    </message>
    <message>
        <source>Usual text size</source>
        <translation>Übliche Schriftgröße</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExpressionField</name>
    <message>
        <source>Earlier expressions (Alt+Up, Alt+Down)</source>
        <translation>Frühere Ausdrücke (Alt+Auf, Alt+Ab)</translation>
    </message>
    <message>
        <source>Nothing was pasted: the text has %1 characters, and at most %2 can be pasted at a time.</source>
        <translation>Nichts wurde eingefügt: Der Text hat %1 Zeichen, und höchstens %2 können auf einmal eingefügt werden.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ExpressionVerdict</name>
    <message>
        <source>Result: %1</source>
        <translation>Ergebnis: %1</translation>
    </message>
    <message>
        <source>Alt+Enter makes the change</source>
        <translation>Alt+Enter führt die Änderung aus</translation>
    </message>
</context>
<context>
    <name>kelvarin::FaultPage</name>
    <message>
        <source>Faults of the graph</source>
        <translation>Fehler des Graphen</translation>
    </message>
    <message>
        <source>Line</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>What is wrong</source>
        <translation>Was falsch ist</translation>
    </message>
    <message>
        <source>&amp;Read the file again</source>
        <translation>Datei &amp;erneut lesen</translation>
    </message>
    <message>
        <source>&amp;Copy all</source>
        <translation>Alles k&amp;opieren</translation>
    </message>
    <message numerus="yes">
        <source>%1 cannot be opened: %n fault(s). Mend the file with a text editor, then read it again.</source>
        <translation>
            <numerusform>%1 kann nicht geöffnet werden: %n Fehler. Bessern Sie die Datei in einem Texteditor aus, und lesen Sie sie dann erneut.</numerusform>
            <numerusform>%1 kann nicht geöffnet werden: %n Fehler. Bessern Sie die Datei in einem Texteditor aus, und lesen Sie sie dann erneut.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>kelvarin::FileDrop</name>
    <message>
        <source>&apos;%1&apos; is compressed. Unpack it, and drop what was in it.</source>
        <translation>„%1“ ist komprimiert. Entpacken Sie die Datei und ziehen Sie ihren Inhalt hierher.</translation>
    </message>
    <message>
        <source>No action reads &apos;%1&apos;. Files of these types can be read: %2.</source>
        <translation>Keine Aktion liest „%1“. Gelesen werden Dateien dieser Arten: %2.</translation>
    </message>
    <message>
        <source>The folder &apos;%1&apos; has no file that an action reads.</source>
        <translation>Der Ordner „%1“ enthält keine Datei, die eine Aktion liest.</translation>
    </message>
    <message>
        <source>The folder &apos;%1&apos; has %2 files that can be read. Drop those that you need.</source>
        <translation>Der Ordner „%1“ enthält %2 lesbare Dateien. Ziehen Sie die hierher, die Sie brauchen.</translation>
    </message>
    <message>
        <source>Add a reader</source>
        <translation>Leseaktion anlegen</translation>
    </message>
    <message numerus="yes">
        <source>Add %n readers</source>
        <translation>
            <numerusform>%n Leseaktion anlegen</numerusform>
            <numerusform>%n Leseaktionen anlegen</numerusform>
        </translation>
    </message>
    <message>
        <source>&apos;%1&apos; is a graph. Drop it alone to open it.</source>
        <translation>„%1“ ist ein Graph. Ziehen Sie ihn allein hierher, um ihn zu öffnen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::FileQuestions</name>
    <message>
        <source>The graph was changed on the disk meanwhile.</source>
        <translation>Der Graph wurde inzwischen auf der Festplatte geändert.</translation>
    </message>
    <message>
        <source>Another program has written %1 since it was read here.</source>
        <translation>Ein anderes Programm hat %1 geschrieben, seit die Datei hier gelesen wurde.</translation>
    </message>
    <message>
        <source>&amp;Keep mine</source>
        <translation>&amp;Meinen behalten</translation>
    </message>
    <message>
        <source>&amp;Load theirs</source>
        <translation>Ande&amp;ren laden</translation>
    </message>
    <message>
        <source>&amp;Compare</source>
        <translation>&amp;Vergleichen</translation>
    </message>
    <message>
        <source>Load theirs</source>
        <translation>Anderen laden</translation>
    </message>
    <message>
        <source>Keep mine</source>
        <translation>Meinen behalten</translation>
    </message>
    <message>
        <source>Compare</source>
        <translation>Vergleichen</translation>
    </message>
    <message>
        <source>%1 is no longer there. Saving writes it anew, under another name if its folder has gone as well.</source>
        <translation>%1 ist nicht mehr da. Speichern schreibt die Datei neu, unter anderem Namen, wenn auch ihr Ordner fehlt.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>%1 is open already.</source>
        <translation>%1 ist schon geöffnet.</translation>
    </message>
    <message>
        <source>%1. Whoever saves last replaces what the other one saved.</source>
        <translation>%1. Wer zuletzt speichert, ersetzt, was der andere gespeichert hat.</translation>
    </message>
    <message>
        <source>Open a &amp;copy</source>
        <translation>Eine &amp;Kopie öffnen</translation>
    </message>
    <message>
        <source>Open &amp;anyway</source>
        <translation>&amp;Trotzdem öffnen</translation>
    </message>
    <message>
        <source>The graph is not saved</source>
        <translation>Der Graph ist nicht gespeichert</translation>
    </message>
    <message>
        <source>Save under another &amp;name ...</source>
        <translation>Unter anderem &amp;Namen speichern ...</translation>
    </message>
    <message>
        <source>Save the graph</source>
        <translation>Graph speichern</translation>
    </message>
    <message>
        <source>Graphs (*%1);;All files (*)</source>
        <translation>Graphen (*%1);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>kelvarin::FindDock</name>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
</context>
<context>
    <name>kelvarin::FindModel</name>
    <message>
        <source>Rename column &apos;%1&apos;</source>
        <translation>Spalte „%1“ umbenennen</translation>
    </message>
    <message>
        <source>name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>type</source>
        <translation>Art</translation>
    </message>
    <message>
        <source>note</source>
        <translation>Notiz</translation>
    </message>
    <message>
        <source>expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>expression of %1</source>
        <translation>Ausdruck von %1</translation>
    </message>
    <message>
        <source>column of the file</source>
        <translation>Spalte der Datei</translation>
    </message>
    <message>
        <source>(note)</source>
        <translation>(Notiz)</translation>
    </message>
    <message>
        <source>(stays)</source>
        <translation>(bleibt)</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Becomes</source>
        <translation>Wird zu</translation>
    </message>
</context>
<context>
    <name>kelvarin::FindPanel</name>
    <message>
        <source>Match case</source>
        <translation>Groß- und Kleinschreibung</translation>
    </message>
    <message>
        <source>Whole words</source>
        <translation>Ganze Wörter</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Suchen</translation>
    </message>
    <message>
        <source>What was found</source>
        <translation>Gefundenes</translation>
    </message>
    <message>
        <source>Actions, columns, expressions, settings, notes</source>
        <translation>Aktionen, Spalten, Ausdrücke, Einstellungen, Notizen</translation>
    </message>
    <message>
        <source>Previous (Shift+F3)</source>
        <translation>Vorheriges (Umschalt+F3)</translation>
    </message>
    <message>
        <source>Next (F3)</source>
        <translation>Nächstes (F3)</translation>
    </message>
    <message>
        <source>Next text that was found</source>
        <translation>Nächster gefundener Text</translation>
    </message>
    <message>
        <source>Text before it</source>
        <translation>Text davor</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Find:</source>
        <translation>Suchen:</translation>
    </message>
    <message>
        <source>Replace by</source>
        <translation>Ersetzen durch</translation>
    </message>
    <message>
        <source>What to replace</source>
        <translation>Was ersetzt wird</translation>
    </message>
    <message>
        <source>In texts</source>
        <translation>In Texten</translation>
    </message>
    <message>
        <source>Column everywhere</source>
        <translation>Spalte überall</translation>
    </message>
    <message>
        <source>Replaces the text in names, expressions, settings and notes that are ticked in the list.</source>
        <translation>Ersetzt den Text in den Namen, Ausdrücken, Einstellungen und Notizen, die in der Liste angehakt sind.</translation>
    </message>
    <message>
        <source>The column of exactly this name gets another one, and all actions that use it follow.</source>
        <translation>Die Spalte mit genau diesem Namen bekommt einen anderen, und alle Aktionen, die sie verwenden, folgen.</translation>
    </message>
    <message>
        <source>Replace by:</source>
        <translation>Ersetzen durch:</translation>
    </message>
    <message>
        <source>No action makes this column: what %1 reads has to have the new name.</source>
        <translation>Keine Aktion erzeugt diese Spalte: Was %1 liest, muss den neuen Namen haben.</translation>
    </message>
    <message>
        <source>Searching …</source>
        <translation>Suche läuft …</translation>
    </message>
    <message>
        <source>No such column is used</source>
        <translation>Keine solche Spalte wird verwendet</translation>
    </message>
    <message>
        <source>Nothing found</source>
        <translation>Nichts gefunden</translation>
    </message>
    <message>
        <source>The first %1</source>
        <translation>Die ersten %1</translation>
    </message>
    <message>
        <source>%1 would change</source>
        <translation>%1 würden geändert</translation>
    </message>
    <message>
        <source>%1 found</source>
        <translation>%1 gefunden</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>Umbenennen</translation>
    </message>
    <message>
        <source>Replace (%1)</source>
        <translation>Ersetzen (%1)</translation>
    </message>
    <message>
        <source>Actions in which the column was renamed: %1.</source>
        <translation>Aktionen, in denen die Spalte umbenannt wurde: %1.</translation>
    </message>
    <message>
        <source>Actions and notes that were changed: %1.</source>
        <translation>Geänderte Aktionen und Notizen: %1.</translation>
    </message>
    <message>
        <source>Actions and notes that were changed: %1. Not %2: the new text is no valid setting there.</source>
        <translation>Geänderte Aktionen und Notizen: %1. Nicht %2: Der neue Text ist dort keine gültige Einstellung.</translation>
    </message>
</context>
<context>
    <name>kelvarin::FlightsTour</name>
    <message>
        <source>Draw</source>
        <translation>Zeichnen</translation>
    </message>
    <message>
        <source>This graph reads flights, computes their speed, and writes late flights and others apart. Rows go along the links, from left to right. To add an action, select the one in front of it, type the first letters of its name and press Enter; or drag it here from the list of actions.</source>
        <translation>Dieser Graph liest Flüge, berechnet ihre Geschwindigkeit und schreibt verspätete und andere getrennt. Zeilen laufen von links nach rechts die Verbindungen entlang. Um eine Aktion anzulegen, wählen Sie die davor aus, tippen die ersten Buchstaben ihres Namens und drücken die Eingabetaste; oder Sie ziehen sie aus der Liste der Aktionen hierher.</translation>
    </message>
    <message>
        <source>See the rows</source>
        <translation>Zeilen ansehen</translation>
    </message>
    <message>
        <source>Here are the first rows that leave the selected action, and what each column has in it. Nothing is written for that. Select another action, or double-click one of its pins, to see the rows there.</source>
        <translation>Hier stehen die ersten Zeilen, die aus der ausgewählten Aktion kommen, und was jede Spalte enthält. Dafür wird nichts geschrieben. Wählen Sie eine andere Aktion aus, oder klicken Sie doppelt auf einen ihrer Anschlüsse, um die Zeilen dort zu sehen.</translation>
    </message>
    <message>
        <source>Change a formula</source>
        <translation>Eine Formel ändern</translation>
    </message>
    <message>
        <source>What the selected action does is set here. Change the formula: names complete while you type, and its values in the first rows are below it at once. Everything can be undone.</source>
        <translation>Was die ausgewählte Aktion tut, wird hier eingestellt. Ändern Sie die Formel: Namen werden beim Tippen ergänzt, und ihre Werte in den ersten Zeilen stehen sofort darunter. Alles lässt sich rückgängig machen.</translation>
    </message>
    <message>
        <source>Run</source>
        <translation>Ausführen</translation>
    </message>
    <message>
        <source>Run, or F5, computes all rows and writes the files. Counts grow on the links meanwhile. A step that fails turns red, and its message is in the log.</source>
        <translation>Ausführen oder F5 berechnet alle Zeilen und schreibt die Dateien. Dabei wachsen die Zahlen an den Verbindungen. Ein Schritt, der scheitert, wird rot, und seine Meldung steht im Protokoll.</translation>
    </message>
    <message>
        <source>Find why a row is filtered</source>
        <translation>Herausfinden, warum eine Zeile ausgefiltert wird</translation>
    </message>
    <message>
        <source>These rows reach the filter &apos;%1&apos;. Right-click one and choose &quot;Step to this row&quot;: the formula is computed for it part by part, at the right, and you see why the row stays or goes.</source>
        <translation>Diese Zeilen erreichen den Filter „%1“. Klicken Sie eine mit der rechten Taste an und wählen Sie „Zu dieser Zeile gehen“: Rechts wird die Formel für sie Teil für Teil berechnet, und Sie sehen, warum die Zeile bleibt oder geht.</translation>
    </message>
</context>
<context>
    <name>kelvarin::GraphCommands</name>
    <message>
        <source>Replace &apos;%1&apos; by %2</source>
        <translation>&apos;%1&apos; durch %2 ersetzen</translation>
    </message>
    <message>
        <source>What is in the clipboard has %1 MiB; at most 16 MiB can be pasted.</source>
        <translation>Der Inhalt der Zwischenablage hat %1 MiB; höchstens 16 MiB lassen sich einfügen.</translation>
    </message>
    <message>
        <source>What is in the clipboard is no piece of a graph: %1</source>
        <translation>Der Inhalt der Zwischenablage ist kein Stück eines Graphen: %1</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Duplicate</source>
        <translation>Duplizieren</translation>
    </message>
    <message>
        <source>Rename column &apos;%1&apos;</source>
        <translation>Spalte &apos;%1&apos; umbenennen</translation>
    </message>
    <message>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <source>Insert %1</source>
        <translation>%1 einfügen</translation>
    </message>
    <message>
        <source>Insert &apos;%1&apos; into a link</source>
        <translation>&apos;%1&apos; in eine Verbindung einfügen</translation>
    </message>
    <message>
        <source>Rename &apos;%1&apos;</source>
        <translation>&apos;%1&apos; umbenennen</translation>
    </message>
    <message>
        <source>Switch &apos;%1&apos; off</source>
        <translation>&apos;%1&apos; ausschalten</translation>
    </message>
    <message numerus="yes">
        <source>Switch %n action(s) off</source>
        <translation>
            <numerusform>%n Aktion ausschalten</numerusform>
            <numerusform>%n Aktionen ausschalten</numerusform>
        </translation>
    </message>
    <message>
        <source>Switch &apos;%1&apos; on</source>
        <translation>&apos;%1&apos; einschalten</translation>
    </message>
    <message numerus="yes">
        <source>Switch %n action(s) on</source>
        <translation>
            <numerusform>%n Aktion einschalten</numerusform>
            <numerusform>%n Aktionen einschalten</numerusform>
        </translation>
    </message>
    <message>
        <source>Move &apos;%1&apos;</source>
        <translation>&apos;%1&apos; verschieben</translation>
    </message>
    <message>
        <source>Move</source>
        <translation>Verschieben</translation>
    </message>
    <message>
        <source>Change &apos;%1&apos;</source>
        <translation>&apos;%1&apos; ändern</translation>
    </message>
    <message>
        <source>Change %1 of &apos;%2&apos;</source>
        <translation>%1 von &apos;%2&apos; ändern</translation>
    </message>
    <message>
        <source>Link &apos;%1&apos; to &apos;%2&apos;</source>
        <translation>&apos;%1&apos; mit &apos;%2&apos; verbinden</translation>
    </message>
    <message>
        <source>Add a note</source>
        <translation>Notiz hinzufügen</translation>
    </message>
    <message>
        <source>Change a note</source>
        <translation>Notiz ändern</translation>
    </message>
    <message>
        <source>Change the parameters</source>
        <translation>Parameter ändern</translation>
    </message>
    <message>
        <source>Delete &apos;%1&apos;</source>
        <translation>&apos;%1&apos; löschen</translation>
    </message>
    <message numerus="yes">
        <source>Delete %n action(s)</source>
        <translation>
            <numerusform>%n Aktion löschen</numerusform>
            <numerusform>%n Aktionen löschen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n link(s)</source>
        <translation>
            <numerusform>%n Verbindung löschen</numerusform>
            <numerusform>%n Verbindungen löschen</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Delete %n note(s)</source>
        <translation>
            <numerusform>%n Notiz löschen</numerusform>
            <numerusform>%n Notizen löschen</numerusform>
        </translation>
    </message>
    <message>
        <source>Rename parameter &apos;%1&apos;</source>
        <translation>Parameter „%1“ umbenennen</translation>
    </message>
</context>
<context>
    <name>kelvarin::GraphSaving</name>
    <message>
        <source>The graph has changes that are not saved.</source>
        <translation>Der Graph hat Änderungen, die nicht gespeichert sind.</translation>
    </message>
    <message>
        <source>Save them first?</source>
        <translation>Zuerst speichern?</translation>
    </message>
</context>
<context>
    <name>kelvarin::GraphSearch</name>
    <message>
        <source>Replace &apos;%1&apos;</source>
        <translation>&apos;%1&apos; ersetzen</translation>
    </message>
</context>
<context>
    <name>kelvarin::HeatLegend</name>
    <message>
        <source>Run the graph to see where time goes.</source>
        <translation>Führen Sie den Graphen aus, um zu sehen, wo die Zeit bleibt.</translation>
    </message>
    <message>
        <source>Run the graph to see where rows go.</source>
        <translation>Führen Sie den Graphen aus, um zu sehen, wo die Zeilen bleiben.</translation>
    </message>
    <message>
        <source>Time of each action, and its share of all time</source>
        <translation>Zeit jeder Aktion und ihr Anteil an der ganzen Zeit</translation>
    </message>
    <message>
        <source>Rows of each action, compared with the most</source>
        <translation>Zeilen jeder Aktion, verglichen mit den meisten</translation>
    </message>
</context>
<context>
    <name>kelvarin::HelpDetails</name>
    <message>
        <source>Missing values:</source>
        <translation>Fehlende Werte:</translation>
    </message>
    <message>
        <source>Note:</source>
        <translation>Hinweis:</translation>
    </message>
    <message>
        <source>Engines:</source>
        <translation>Rechenwerke:</translation>
    </message>
    <message>
        <source>Insert:</source>
        <translation>Einfügen:</translation>
    </message>
    <message>
        <source>Examples:</source>
        <translation>Beispiele:</translation>
    </message>
</context>
<context>
    <name>kelvarin::HistogramView</name>
    <message>
        <source>%1 different</source>
        <translation>%1 verschiedene</translation>
    </message>
    <message>
        <source>about %1 different</source>
        <translation>etwa %1 verschiedene</translation>
    </message>
    <message>
        <source>%1: %2 rows</source>
        <translation>%1: %2 Zeilen</translation>
    </message>
    <message>
        <source>%1 to %2: %3 rows</source>
        <translation>%1 bis %2: %3 Zeilen</translation>
    </message>
</context>
<context>
    <name>kelvarin::HistoryKeys</name>
    <message>
        <source>&amp;Remove the star of this expression</source>
        <translation>Stern dieses Ausdrucks &amp;entfernen</translation>
    </message>
    <message>
        <source>&amp;Star this expression</source>
        <translation>Diesen Ausdruck mit &amp;Stern merken</translation>
    </message>
    <message>
        <source>No earlier expressions yet</source>
        <translation>Noch keine früheren Ausdrücke</translation>
    </message>
</context>
<context>
    <name>kelvarin::HistoryModel</name>
    <message>
        <source>Row</source>
        <translation>Zeile</translation>
    </message>
    <message>
        <source>Stopped</source>
        <translation>Angehalten</translation>
    </message>
    <message>
        <source>Failure</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>kelvarin::HostWindow</name>
    <message>
        <source>Actions</source>
        <translation>Aktionen</translation>
    </message>
    <message>
        <source>Properties</source>
        <translation>Eigenschaften</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>Run report</source>
        <translation>Laufbericht</translation>
    </message>
    <message>
        <source>%1[*] - kelvarin</source>
        <translation>%1[*] - kelvarin</translation>
    </message>
    <message>
        <source>%1 &quot;%2&quot;</source>
        <translation>%1 &quot;%2&quot;</translation>
    </message>
    <message>
        <source>Running ...</source>
        <translation>Läuft ...</translation>
    </message>
    <message>
        <source>stopped after %1 s</source>
        <translation>angehalten nach %1 s</translation>
    </message>
    <message>
        <source>failed after %1 s: see the log</source>
        <translation>fehlgeschlagen nach %1 s: siehe Protokoll</translation>
    </message>
    <message>
        <source>There is no help page &quot;%1&quot;.</source>
        <translation>Es gibt keine Hilfeseite &quot;%1&quot;.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>New graph</source>
        <translation>Neuer Graph</translation>
    </message>
    <message>
        <source>Copy of %1</source>
        <translation>Kopie von %1</translation>
    </message>
    <message>
        <source>Add %1</source>
        <translation>%1 hinzufügen</translation>
    </message>
    <message>
        <source>No expression reads these rows yet: add a Calculator or a filter to step through them.</source>
        <translation>Noch liest kein Ausdruck diese Zeilen: einen Calculator oder Filter hinzufügen, um sie schrittweise zu durchlaufen.</translation>
    </message>
    <message>
        <source>Rename a column</source>
        <translation>Spalte umbenennen</translation>
    </message>
    <message>
        <source>&amp;New name of &apos;%1&apos;, here and wherever it is used:</source>
        <translation>&amp;Neuer Name von &apos;%1&apos;, hier und überall, wo die Spalte verwendet wird:</translation>
    </message>
    <message numerus="yes">
        <source>%n action(s) follow.</source>
        <translation>
            <numerusform>%n Aktion wurde angepasst.</numerusform>
            <numerusform>%n Aktionen wurden angepasst.</numerusform>
        </translation>
    </message>
    <message>
        <source>There is nothing to run yet.</source>
        <translation>Es gibt noch nichts auszuführen.</translation>
    </message>
    <message>
        <source>Open a graph</source>
        <translation>Graph öffnen</translation>
    </message>
    <message>
        <source>%1 cannot be restored: its recovery file is %2</source>
        <translation>%1 kann nicht wiederhergestellt werden: die Sicherungsdatei ist %2</translation>
    </message>
    <message>
        <source>graph</source>
        <translation>graph</translation>
    </message>
    <message>
        <source>Saved %1.</source>
        <translation>%1 gespeichert.</translation>
    </message>
    <message>
        <source>Export the canvas</source>
        <translation>Zeichenfläche exportieren</translation>
    </message>
    <message>
        <source>Pictures (*.svg *.png)</source>
        <translation>Bilder (*.svg *.png)</translation>
    </message>
    <message>
        <source>%1 cannot be written: %2</source>
        <translation>%1 lässt sich nicht schreiben: %2</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Datei</translation>
    </message>
    <message>
        <source>&amp;New</source>
        <translation>&amp;Neu</translation>
    </message>
    <message>
        <source>&amp;Open ...</source>
        <translation>&amp;Öffnen ...</translation>
    </message>
    <message>
        <source>Open &amp;recent</source>
        <translation>&amp;Zuletzt geöffnet</translation>
    </message>
    <message>
        <source>&amp;Save</source>
        <translation>&amp;Speichern</translation>
    </message>
    <message>
        <source>Save &amp;as ...</source>
        <translation>Speichern &amp;unter ...</translation>
    </message>
    <message>
        <source>&amp;Export as picture ...</source>
        <translation>Als &amp;Bild exportieren ...</translation>
    </message>
    <message>
        <source>&amp;Close</source>
        <translation>S&amp;chließen</translation>
    </message>
    <message>
        <source>None yet</source>
        <translation>Noch keine</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>&amp;Bearbeiten</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>Rückgängig</translation>
    </message>
    <message>
        <source>Redo</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>&amp;Graph</source>
        <translation>&amp;Graph</translation>
    </message>
    <message>
        <source>&amp;Run</source>
        <translation>&amp;Ausführen</translation>
    </message>
    <message>
        <source>Run to &amp;here</source>
        <translation>Bis &amp;hier ausführen</translation>
    </message>
    <message>
        <source>&amp;Stop</source>
        <translation>A&amp;nhalten</translation>
    </message>
    <message>
        <source>Copy as command &amp;line</source>
        <translation>Als &amp;Befehlszeile kopieren</translation>
    </message>
    <message>
        <source>Copied: %1</source>
        <translation>Kopiert: %1</translation>
    </message>
    <message>
        <source>&amp;Parameters ...</source>
        <translation>&amp;Parameter ...</translation>
    </message>
    <message>
        <source>&amp;Open in a window</source>
        <translation>In einem &amp;Fenster öffnen</translation>
    </message>
    <message>
        <source>Replace &amp;by</source>
        <translation>Er&amp;setzen durch</translation>
    </message>
    <message>
        <source>&amp;Arrange</source>
        <translation>An&amp;ordnen</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Ansicht</translation>
    </message>
    <message>
        <source>E&amp;xpert mode</source>
        <translation>E&amp;xpertenmodus</translation>
    </message>
    <message>
        <source>&amp;Help</source>
        <translation>&amp;Hilfe</translation>
    </message>
    <message>
        <source>&amp;This action</source>
        <translation>&amp;Diese Aktion</translation>
    </message>
    <message>
        <source>&amp;Keyboard</source>
        <translation>&amp;Tastatur</translation>
    </message>
    <message>
        <source>Graph</source>
        <translation>Graph</translation>
    </message>
    <message>
        <source>Outcome of the last run</source>
        <translation>Ergebnis des letzten Laufs</translation>
    </message>
    <message>
        <source>Waiting for space on the disk</source>
        <translation>Wartet auf Platz auf dem Datenträger</translation>
    </message>
    <message>
        <source>A command line runs the file of a graph, and this graph has none yet. Save it, then copy the command.</source>
        <translation>Eine Befehlszeile führt die Datei eines Graphen aus, und dieser hat noch keine. Speichern Sie ihn und kopieren Sie dann den Befehl.</translation>
    </message>
    <message>
        <source>Copied; it runs the graph as last saved: %1</source>
        <translation>Kopiert; der Befehl führt den Graphen aus, wie er zuletzt gespeichert wurde: %1</translation>
    </message>
    <message>
        <source>The examples are not installed, and the tour is of one of them.</source>
        <translation>Die Beispiele sind nicht installiert, und die Führung braucht eines davon.</translation>
    </message>
    <message>
        <source>This example lies in %1, where nothing can be written. Before you run it, save it in a folder of your own; the data that it reads is copied with it.</source>
        <translation>Dieses Beispiel liegt in %1, wo nichts geschrieben werden kann. Speichern Sie es vor dem Ausführen in einem eigenen Ordner; die Daten, die es liest, werden mitkopiert.</translation>
    </message>
    <message>
        <source>Save as ...</source>
        <translation>Speichern unter ...</translation>
    </message>
    <message>
        <source>Saved %1, and copied %2.</source>
        <translation>%1 gespeichert und %2 kopiert.</translation>
    </message>
    <message>
        <source>A link is broken, and kept: %1</source>
        <translation>Eine Verbindung ist unterbrochen und bleibt erhalten: %1</translation>
    </message>
    <message>
        <source>&amp;Find ...</source>
        <translation>&amp;Suchen ...</translation>
    </message>
    <message>
        <source>&amp;Replace ...</source>
        <translation>E&amp;rsetzen ...</translation>
    </message>
    <message>
        <source>Rena&amp;me a column everywhere ...</source>
        <translation>Eine Spalte überall u&amp;mbenennen ...</translation>
    </message>
    <message>
        <source>Find &amp;next</source>
        <translation>&amp;Nächstes suchen</translation>
    </message>
    <message>
        <source>Find pre&amp;vious</source>
        <translation>V&amp;origes suchen</translation>
    </message>
    <message>
        <source>Next proble&amp;m</source>
        <translation>Nächstes Proble&amp;m</translation>
    </message>
    <message>
        <source>Previo&amp;us problem</source>
        <translation>Vorheriges Pro&amp;blem</translation>
    </message>
    <message>
        <source>Copy run to here as &amp;command line</source>
        <translation>Ausführen bis hier als &amp;Befehlszeile kopieren</translation>
    </message>
    <message>
        <source>T&amp;our of an example</source>
        <translation>Führung durch ein &amp;Beispiel</translation>
    </message>
</context>
<context>
    <name>kelvarin::InlineContent</name>
    <message>
        <source>Row %1: %2</source>
        <translation>Zeile %1: %2</translation>
    </message>
</context>
<context>
    <name>kelvarin::InlineTableEditor</name>
    <message>
        <source>S&amp;orted on:</source>
        <translation>S&amp;ortiert nach:</translation>
    </message>
    <message>
        <source>for instance: id 0, name A</source>
        <translation>zum Beispiel: id 0, name A</translation>
    </message>
    <message>
        <source>Table</source>
        <translation>Tabelle</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Paste</source>
        <translation>Einfügen</translation>
    </message>
    <message>
        <source>Make null</source>
        <translation>Auf NULL setzen</translation>
    </message>
    <message>
        <source>Add a row</source>
        <translation>Zeile hinzufügen</translation>
    </message>
    <message>
        <source>Remove rows</source>
        <translation>Zeilen entfernen</translation>
    </message>
    <message>
        <source>Rows:</source>
        <translation>Zeilen:</translation>
    </message>
    <message>
        <source>Add a row below this one</source>
        <translation>Eine Zeile unter dieser hinzufügen</translation>
    </message>
    <message>
        <source>Remove the selected rows</source>
        <translation>Die ausgewählten Zeilen entfernen</translation>
    </message>
    <message>
        <source>Move the row up</source>
        <translation>Die Zeile nach oben schieben</translation>
    </message>
    <message>
        <source>Move the row down</source>
        <translation>Die Zeile nach unten schieben</translation>
    </message>
    <message>
        <source>Col&amp;umn:</source>
        <translation>Spal&amp;te:</translation>
    </message>
    <message>
        <source>Name of the column</source>
        <translation>Name der Spalte</translation>
    </message>
    <message>
        <source>Type of the column</source>
        <translation>Typ der Spalte</translation>
    </message>
    <message>
        <source>Add a column behind this one</source>
        <translation>Eine Spalte hinter dieser hinzufügen</translation>
    </message>
    <message>
        <source>Remove the column</source>
        <translation>Die Spalte entfernen</translation>
    </message>
    <message>
        <source>Move the column left</source>
        <translation>Die Spalte nach links schieben</translation>
    </message>
    <message>
        <source>Move the column right</source>
        <translation>Die Spalte nach rechts schieben</translation>
    </message>
    <message>
        <source>Paste a table from a spreadsheet, or add a column.</source>
        <translation>Eine Tabelle aus einer Tabellenkalkulation einfügen oder eine Spalte hinzufügen.</translation>
    </message>
    <message>
        <source>Pasted values look like numbers with a decimal comma: %1, for instance &apos;%2&apos;.</source>
        <translation>Eingefügte Werte sehen aus wie Zahlen mit Dezimalkomma: %1, zum Beispiel &apos;%2&apos;.</translation>
    </message>
    <message>
        <source>Make them numbers</source>
        <translation>In Zahlen umwandeln</translation>
    </message>
    <message>
        <source>Keep the texts</source>
        <translation>Die Texte behalten</translation>
    </message>
    <message>
        <source>The first line gave the columns their names.</source>
        <translation>Die erste Zeile hat den Spalten ihre Namen gegeben.</translation>
    </message>
    <message>
        <source>Make it a row</source>
        <translation>Zu einer Zeile machen</translation>
    </message>
    <message>
        <source>Keep the names</source>
        <translation>Die Namen behalten</translation>
    </message>
</context>
<context>
    <name>kelvarin::InlineTableModel</name>
    <message>
        <source>Column %1, type %2</source>
        <translation>Spalte %1, Typ %2</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_MathParserCheck</name>
    <message>
        <source>Math Parser Error</source>
        <translation>Fehler im Ausdruck</translation>
    </message>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>What is wrong</source>
        <translation>Was falsch ist</translation>
    </message>
    <message>
        <source>The expression, with a mark below the fault</source>
        <translation>Der Ausdruck mit einer Marke unter dem Fehler</translation>
    </message>
    <message>
        <source>What to do</source>
        <translation>Was zu tun ist</translation>
    </message>
    <message>
        <source>Use instead: %1</source>
        <translation>Stattdessen: %1</translation>
    </message>
    <message>
        <source>Names that may have been meant</source>
        <translation>Namen, die gemeint sein können</translation>
    </message>
    <message>
        <source>Puts the name into the expression</source>
        <translation>Setzt den Namen in den Ausdruck ein</translation>
    </message>
    <message>
        <source>A picture of the mistake</source>
        <translation>Ein Bild des Fehlers</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copies the message and the expression as text</source>
        <translation>Kopiert die Meldung und den Ausdruck als Text</translation>
    </message>
    <message>
        <source>&amp;Go there</source>
        <translation>&amp;Zur Stelle</translation>
    </message>
    <message>
        <source>Selects the fault in the expression</source>
        <translation>Markiert den Fehler im Ausdruck</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_actionFilterRows</name>
    <message>
        <source>Return False and continue (very slowly)</source>
        <translation>Falsch annehmen und fortfahren (sehr langsam)</translation>
    </message>
    <message>
        <source>Expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>E&amp;xpression:</source>
        <translation>A&amp;usdruck:</translation>
    </message>
    <message>
        <source>Start</source>
        <translation>Start</translation>
    </message>
    <message>
        <source>STOP</source>
        <translation>STOPP</translation>
    </message>
    <message>
        <source>Eval Next</source>
        <translation>Nächste auswerten</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Kommentar</translation>
    </message>
    <message>
        <source>Co&amp;mments:</source>
        <translation>Ko&amp;mmentar:</translation>
    </message>
    <message>
        <source>&quot;Filter Rows&quot; Action</source>
        <translation>Aktion &quot;Filter Rows&quot;</translation>
    </message>
    <message>
        <source>The expression &apos;%1&apos; seems to be a sampling expression.
Do you want to truncate at the first failed row?</source>
        <translation>Der Ausdruck &apos;%1&apos; scheint nur eine Stichprobe zu nehmen.
Soll bei der ersten nicht erfüllten Zeile abgeschnitten werden?</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_actionMathParser</name>
    <message>
        <source>Return null and continue (very slowly)</source>
        <translation>NULL annehmen und fortfahren (sehr langsam)</translation>
    </message>
    <message>
        <source>Expressions</source>
        <translation>Ausdrücke</translation>
    </message>
    <message>
        <source>Expression</source>
        <translation>Ausdruck</translation>
    </message>
    <message>
        <source>Debug Start</source>
        <translation>Debug-Start</translation>
    </message>
    <message>
        <source>Debug STOP</source>
        <translation>Debug-STOPP</translation>
    </message>
    <message>
        <source>Debug - Next (F10)</source>
        <translation>Debug - Weiter (F10)</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>Notizen</translation>
    </message>
    <message>
        <source>N&amp;otes:</source>
        <translation>N&amp;otizen:</translation>
    </message>
    <message>
        <source>Variables</source>
        <translation>Variablen</translation>
    </message>
    <message>
        <source>Element of the vectors whose values are shown</source>
        <translation>Element der Vektoren, dessen Werte gezeigt werden</translation>
    </message>
    <message>
        <source>The values below are those of this element of each vector.</source>
        <translation>Die Werte darunter sind die dieses Elements jedes Vektors.</translation>
    </message>
    <message>
        <source>Elemen&amp;t:</source>
        <translation>&amp;Vektorelement:</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_mathParserHelp</name>
    <message>
        <source>Functions by group</source>
        <translation>Funktionen nach Gruppen</translation>
    </message>
    <message>
        <source>Results of the search</source>
        <translation>Ergebnisse der Suche</translation>
    </message>
    <message>
        <source>&amp;Search:</source>
        <translation>&amp;Suchen:</translation>
    </message>
    <message>
        <source>round, days between, IFNULL</source>
        <translation>round, Tage zwischen, IFNULL</translation>
    </message>
    <message>
        <source>A name, words of what it does, or its name in spreadsheets and databases</source>
        <translation>Ein Name, Wörter zu dem, was sie tut, oder ihr Name in Tabellenkalkulationen und Datenbanken</translation>
    </message>
    <message>
        <source>Functions</source>
        <translation>Funktionen</translation>
    </message>
    <message>
        <source>Comments</source>
        <translation>Erklärungen</translation>
    </message>
    <message>
        <source>About the selected entry</source>
        <translation>Über den gewählten Eintrag</translation>
    </message>
    <message>
        <source>Names that look alike</source>
        <translation>Ähnlich geschriebene Namen</translation>
    </message>
    <message>
        <source>Found</source>
        <translation>Gefunden</translation>
    </message>
    <message>
        <source>Further names, which the list of functions leaves out</source>
        <translation>Weitere Namen, die in der Liste der Funktionen fehlen</translation>
    </message>
    <message>
        <source>There is no &apos;%1&apos; in expressions.</source>
        <translation>In Ausdrücken gibt es kein &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>There is no &apos;%1&apos; in expressions; the first ones below do the same.</source>
        <translation>In Ausdrücken gibt es kein &apos;%1&apos;; die ersten Einträge unten tun dasselbe.</translation>
    </message>
    <message>
        <source>Nothing is found. Try another word, or clear the search to see all groups.</source>
        <translation>Nichts gefunden. Versuchen Sie ein anderes Wort, oder leeren Sie die Suche, um alle Gruppen zu sehen.</translation>
    </message>
    <message>
        <source>Select an entry to read about it. Enter or a double click inserts it at the cursor of the expression.</source>
        <translation>Wählen Sie einen Eintrag, um über ihn zu lesen. Enter oder ein Doppelklick fügt ihn an der Schreibmarke des Ausdrucks ein.</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_readColumnarGel</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Blocks</source>
        <translation>Blöcke</translation>
    </message>
    <message>
        <source>Reliability</source>
        <translation>Zuverlässigkeit</translation>
    </message>
    <message>
        <source>Salvage to a new table</source>
        <translation>In eine neue Tabelle retten</translation>
    </message>
    <message>
        <source>Columnar files (*.cgel_kelvarin)</source>
        <translation>Spaltendateien (*.cgel_kelvarin)</translation>
    </message>
    <message>
        <source>Choose a file to see what is in it.</source>
        <translation>Wählen Sie eine Datei, um zu sehen, was darin ist.</translation>
    </message>
    <message>
        <source>Without an expression every block is read.</source>
        <translation>Ohne Ausdruck wird jeder Block gelesen.</translation>
    </message>
    <message>
        <source>The filter is switched off: every block is read. %1</source>
        <translation>Der Filter ist ausgeschaltet: jeder Block wird gelesen. %1</translation>
    </message>
    <message>
        <source>The blocks that the filter leaves</source>
        <translation>Die Blöcke, die der Filter lässt</translation>
    </message>
    <message>
        <source>All blocks</source>
        <translation>Alle Blöcke</translation>
    </message>
    <message>
        <source>What it skips is known in a run only, since %1 reads a file.</source>
        <translation>Was er überspringt, zeigt erst ein Lauf, weil %1 eine Datei liest.</translation>
    </message>
</context>
<context>
    <name>kelvarin::Interface_writeColumnarGel</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Rows and columns</source>
        <translation>Zeilen und Spalten</translation>
    </message>
    <message>
        <source>Blocks</source>
        <translation>Blöcke</translation>
    </message>
    <message>
        <source>Old file</source>
        <translation>Alte Datei</translation>
    </message>
    <message>
        <source>The names of several files are known in a run only.</source>
        <translation>Die Namen mehrerer Dateien sind erst im Lauf bekannt.</translation>
    </message>
    <message>
        <source>For values such as &apos;A&apos; and &apos;B&apos;.</source>
        <translation>Für Werte wie &apos;A&apos; und &apos;B&apos;.</translation>
    </message>
    <message>
        <source>And so on.</source>
        <translation>Und so weiter.</translation>
    </message>
    <message>
        <source>Delete a table</source>
        <translation>Tabelle löschen</translation>
    </message>
    <message>
        <source>Delete &apos;%1&apos; and its column sets? They cannot be brought back.</source>
        <translation>&apos;%1&apos; und ihre Spaltensätze löschen? Sie lassen sich nicht zurückholen.</translation>
    </message>
    <message>
        <source>&amp;Delete</source>
        <translation>&amp;Löschen</translation>
    </message>
    <message>
        <source>&amp;Keep</source>
        <translation>&amp;Behalten</translation>
    </message>
    <message>
        <source>For values in the first rows.</source>
        <translation>Für Werte in den ersten Zeilen.</translation>
    </message>
    <message>
        <source>There is no such file yet.</source>
        <translation>Diese Datei gibt es noch nicht.</translation>
    </message>
    <message>
        <source>There is a table: %1</source>
        <translation>Es gibt eine Tabelle: %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::LinkRules</name>
    <message>
        <source>The action has no name.</source>
        <translation>Die Aktion hat keinen Namen.</translation>
    </message>
    <message>
        <source>Another action is called &apos;%1&apos; already: links mean that one.</source>
        <translation>Eine andere Aktion heißt schon &apos;%1&apos;: Verbindungen meinen jene.</translation>
    </message>
    <message>
        <source>The graph has no action &apos;%1&apos;.</source>
        <translation>Der Graph hat keine Aktion &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; has no output pin %2.</source>
        <translation>&apos;%1&apos; hat keinen Ausgang %2.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; has no input pin %2.</source>
        <translation>&apos;%1&apos; hat keinen Eingang %2.</translation>
    </message>
    <message>
        <source>Input pin %1 of &apos;%2&apos; gets its rows from &apos;%3&apos; already.</source>
        <translation>Eingang %1 von &apos;%2&apos; bekommt seine Zeilen schon von &apos;%3&apos;.</translation>
    </message>
    <message>
        <source>An action cannot read its own rows.</source>
        <translation>Eine Aktion kann nicht ihre eigenen Zeilen lesen.</translation>
    </message>
    <message>
        <source>Rows would go round in a circle: &apos;%1&apos; gets rows from &apos;%2&apos; already.</source>
        <translation>Die Zeilen würden im Kreis laufen: &apos;%1&apos; bekommt schon Zeilen von &apos;%2&apos;.</translation>
    </message>
</context>
<context>
    <name>kelvarin::LogModel</name>
    <message>
        <source>Error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Warning</source>
        <translation>Warnung</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
    <message>
        <source>Level</source>
        <translation>Stufe</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
</context>
<context>
    <name>kelvarin::LogPanel</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>&amp;Log</source>
        <translation>&amp;Protokoll</translation>
    </message>
    <message>
        <source>Copy</source>
        <translation>Kopieren</translation>
    </message>
    <message>
        <source>Copy the selected lines, or all</source>
        <translation>Die gewählten Zeilen kopieren, oder alle</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Leeren</translation>
    </message>
    <message>
        <source>Remove all lines from the log</source>
        <translation>Alle Zeilen aus dem Protokoll entfernen</translation>
    </message>
    <message>
        <source>Copy log lines</source>
        <translation>Protokollzeilen kopieren</translation>
    </message>
    <message>
        <source>Lines to show</source>
        <translation>Zu zeigende Zeilen</translation>
    </message>
    <message>
        <source>All lines</source>
        <translation>Alle Zeilen</translation>
    </message>
    <message>
        <source>Warnings and errors</source>
        <translation>Warnungen und Fehler</translation>
    </message>
    <message>
        <source>Errors</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Filter the log</source>
        <translation>Das Protokoll filtern</translation>
    </message>
</context>
<context>
    <name>kelvarin::LogTitle</name>
    <message>
        <source>Log</source>
        <translation>Protokoll</translation>
    </message>
    <message>
        <source>errors: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>warnings: %1</source>
        <translation>Warnungen: %1</translation>
    </message>
    <message>
        <source>Log (%1)</source>
        <translation>Protokoll (%1)</translation>
    </message>
</context>
<context>
    <name>kelvarin::Minimap</name>
    <message>
        <source>Overview of the graph</source>
        <translation>Übersicht über den Graphen</translation>
    </message>
    <message>
        <source>Overview of the graph: click or drag to move about</source>
        <translation>Übersicht über den Graphen: klicken oder ziehen, um den Ausschnitt zu verschieben</translation>
    </message>
</context>
<context>
    <name>kelvarin::OutputBar</name>
    <message>
        <source>(no name)</source>
        <translation>(ohne Namen)</translation>
    </message>
    <message>
        <source>Add an output</source>
        <translation>Eine Ausgabe hinzufügen</translation>
    </message>
    <message>
        <source>Move the output to the left</source>
        <translation>Die Ausgabe nach links schieben</translation>
    </message>
    <message>
        <source>Move the output to the right</source>
        <translation>Die Ausgabe nach rechts schieben</translation>
    </message>
    <message>
        <source>Outputs</source>
        <translation>Ausgaben</translation>
    </message>
    <message>
        <source>A double click or F2 renames an output, Del removes it.</source>
        <translation>Ein Doppelklick oder F2 benennt eine Ausgabe um, Entf entfernt sie.</translation>
    </message>
    <message>
        <source>The expression is wrong.</source>
        <translation>Der Ausdruck ist falsch.</translation>
    </message>
    <message>
        <source>Rename the output</source>
        <translation>Ausgabe umbenennen</translation>
    </message>
    <message>
        <source>Remove the output</source>
        <translation>Ausgabe entfernen</translation>
    </message>
</context>
<context>
    <name>kelvarin::OutputFields</name>
    <message>
        <source>&amp;Name:</source>
        <translation>&amp;Name:</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>The name of the column that the expression makes.</source>
        <translation>Der Name der Spalte, die der Ausdruck berechnet.</translation>
    </message>
    <message>
        <source>&amp;Name expression:</source>
        <translation>&amp;Namensausdruck:</translation>
    </message>
    <message>
        <source>Name expression</source>
        <translation>Namensausdruck</translation>
    </message>
    <message>
        <source>A text for each element: _n is its number, an alias the name of its column.</source>
        <translation>Ein Text für jedes Element: _n ist seine Nummer, ein Alias der Name seiner Spalte.</translation>
    </message>
    <message>
        <source>Nu&amp;mber</source>
        <translation>&amp;Zahl</translation>
    </message>
    <message>
        <source>&amp;Key</source>
        <translation>&amp;Schlüssel</translation>
    </message>
    <message>
        <source>Te&amp;xt</source>
        <translation>Te&amp;xt</translation>
    </message>
    <message>
        <source>Type:</source>
        <translation>Typ:</translation>
    </message>
    <message>
        <source>&amp;update the column</source>
        <translation>die Spalte aktualisie&amp;ren</translation>
    </message>
    <message>
        <source>The result replaces the column of the input that has this name.</source>
        <translation>Das Ergebnis ersetzt die Spalte der Eingabe, die so heißt.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ParametersDialog</name>
    <message>
        <source>Parameters of the graph</source>
        <translation>Parameter des Graphen</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <source>&amp;Add</source>
        <translation>&amp;Hinzufügen</translation>
    </message>
    <message>
        <source>&amp;Remove</source>
        <translation>&amp;Entfernen</translation>
    </message>
    <message>
        <source>&amp;Use these</source>
        <translation>Diese &amp;verwenden</translation>
    </message>
    <message>
        <source>Write ${name} in a file name or any other setting; in expressions, the name alone. Settings and expressions follow a new name.</source>
        <translation>Schreiben Sie ${name} in einen Dateinamen oder eine andere Einstellung; in Ausdrücken den Namen allein. Einstellungen und Ausdrücke folgen einem neuen Namen.</translation>
    </message>
    <message>
        <source>There is no parameter &apos;%1&apos;, and these actions cannot run without it: %2.</source>
        <translation>Es gibt keinen Parameter „%1“, und ohne ihn können diese Aktionen nicht laufen: %2.</translation>
    </message>
    <message>
        <source>Add &apos;%1&apos;</source>
        <translation>„%1“ anlegen</translation>
    </message>
</context>
<context>
    <name>kelvarin::ParametersModel</name>
    <message>
        <source>A value has no name: &quot;%1&quot;.</source>
        <translation>Ein Wert hat keinen Namen: „%1“.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; cannot be referred to: a name has no &apos;}&apos;.</source>
        <translation>Auf „%1“ kann nicht verwiesen werden: Ein Name enthält kein „}“.</translation>
    </message>
    <message>
        <source>Two parameters are called &apos;%1&apos;.</source>
        <translation>Zwei Parameter heißen „%1“.</translation>
    </message>
    <message>
        <source>The value of &apos;%1&apos; refers to &apos;%2&apos;, which is no parameter.</source>
        <translation>Der Wert von „%1“ verweist auf „%2“, das kein Parameter ist.</translation>
    </message>
    <message>
        <source>The value of &apos;%1&apos; refers to &apos;%2&apos;, which must stand above it.</source>
        <translation>Der Wert von „%1“ verweist auf „%2“, das darüber stehen muss.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Name</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Used by</source>
        <translation>Verwendet von</translation>
    </message>
</context>
<context>
    <name>kelvarin::PartValueTip</name>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>%1 = %2 in row %3</source>
        <translation>%1 = %2 in Zeile %3</translation>
    </message>
    <message>
        <source>%1 = %2 with the samples of the variables</source>
        <translation>%1 = %2 mit den Beispielwerten der Variablen</translation>
    </message>
    <message>
        <source> (may differ in a run)</source>
        <translation> (kann in einem Lauf anders sein)</translation>
    </message>
</context>
<context>
    <name>kelvarin::PartsModel</name>
    <message>
        <source>not used in this row</source>
        <translation>in dieser Zeile nicht verwendet</translation>
    </message>
    <message>
        <source>may differ</source>
        <translation>kann abweichen</translation>
    </message>
    <message>
        <source>error</source>
        <translation>Fehler</translation>
    </message>
    <message>
        <source>Part of the expression</source>
        <translation>Teil des Ausdrucks</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Note</source>
        <translation>Hinweis</translation>
    </message>
</context>
<context>
    <name>kelvarin::PathField</name>
    <message>
        <source>Choose a folder</source>
        <translation>Ordner wählen</translation>
    </message>
    <message>
        <source>Choose a file</source>
        <translation>Datei wählen</translation>
    </message>
</context>
<context>
    <name>kelvarin::PinPreview</name>
    <message>
        <source>Nothing is linked to this pin, so no rows come here. Link an action to it.</source>
        <translation>Mit diesem Anschluss ist nichts verbunden, also kommen hier keine Zeilen an. Verbinden Sie eine Aktion mit ihm.</translation>
    </message>
</context>
<context>
    <name>kelvarin::PinTable</name>
    <message>
        <source>An earlier expression is still running.</source>
        <translation>Ein früherer Ausdruck läuft noch.</translation>
    </message>
    <message>
        <source>The names take longer than a second to compute.</source>
        <translation>Die Namen zu berechnen dauert länger als eine Sekunde.</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviewBar</name>
    <message>
        <source>Compute the rows again</source>
        <translation>Die Zeilen neu berechnen</translation>
    </message>
    <message>
        <source>Stop computing rows</source>
        <translation>Das Berechnen der Zeilen anhalten</translation>
    </message>
    <message>
        <source>Export the rows as CSV …</source>
        <translation>Die Zeilen als CSV exportieren …</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>At most %1</source>
        <translation>Höchstens %1</translation>
    </message>
    <message>
        <source>How many of the first rows are computed</source>
        <translation>Wie viele der ersten Zeilen berechnet werden</translation>
    </message>
    <message>
        <source>First rows</source>
        <translation>Erste Zeilen</translation>
    </message>
    <message>
        <source>Show what the values of each column are like</source>
        <translation>Zeigen, wie die Werte jeder Spalte beschaffen sind</translation>
    </message>
    <message>
        <source>Filter the rows that are shown (Ctrl+F)</source>
        <translation>Die gezeigten Zeilen filtern (Strg+F)</translation>
    </message>
    <message>
        <source>Show the profile of one column in full</source>
        <translation>Das Profil einer Spalte ganz zeigen</translation>
    </message>
    <message>
        <source>First rows:</source>
        <translation>Erste Zeilen:</translation>
    </message>
    <message>
        <source>Profiles</source>
        <translation>Profile</translation>
    </message>
    <message>
        <source>Filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>Einzelheiten</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviewHeader</name>
    <message>
        <source>%1 null</source>
        <translation>%1 null</translation>
    </message>
    <message>
        <source>%1 NaN</source>
        <translation>%1 NaN</translation>
    </message>
    <message>
        <source>no values</source>
        <translation>keine Werte</translation>
    </message>
    <message>
        <source>of %1 rows</source>
        <translation>von %1 Zeilen</translation>
    </message>
    <message>
        <source>Filter of the column %1</source>
        <translation>Filter der Spalte %1</translation>
    </message>
    <message>
        <source>filter</source>
        <translation>Filter</translation>
    </message>
    <message>
        <source>A text, a comparison such as &gt; 5 or = Lyon, a range such as 1..5, null, !null, nan or empty</source>
        <translation>Ein Text, ein Vergleich wie &gt; 5 oder = Lyon, ein Bereich wie 1..5, null, !null, nan oder empty</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviewModel</name>
    <message>
        <source>reading</source>
        <translation>wird gelesen</translation>
    </message>
    <message>
        <source>number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>text</source>
        <translation>Text</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviewPanel::Parts</name>
    <message>
        <source>There is not enough memory for this. Look at fewer rows, or close other programs.</source>
        <translation>Dafür reicht der Speicher nicht. Sehen Sie weniger Zeilen an, oder schließen Sie andere Programme.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Click an action or one of its pins, and its first rows appear here.</source>
        <translation>Klicken Sie auf eine Aktion oder einen ihrer Anschlüsse, dann erscheinen hier ihre ersten Zeilen.</translation>
    </message>
    <message>
        <source>The first rows are being computed …</source>
        <translation>Die ersten Zeilen werden berechnet …</translation>
    </message>
    <message>
        <source>Stopped before the first row came.</source>
        <translation>Angehalten, bevor die erste Zeile kam.</translation>
    </message>
    <message>
        <source>Compute the rows</source>
        <translation>Die Zeilen berechnen</translation>
    </message>
    <message>
        <source>There are no rows to show. The message above says why.</source>
        <translation>Es gibt keine Zeilen zu zeigen. Die Meldung darüber sagt, warum.</translation>
    </message>
    <message>
        <source>Try again</source>
        <translation>Noch einmal versuchen</translation>
    </message>
    <message>
        <source>The rows end here because of an error: %1</source>
        <translation>Die Zeilen enden hier wegen eines Fehlers: %1</translation>
    </message>
    <message>
        <source>Go to the action</source>
        <translation>Zur Aktion</translation>
    </message>
    <message>
        <source>No rows come out of this pin; its columns are known.</source>
        <translation>Aus diesem Anschluss kommen keine Zeilen; seine Spalten sind bekannt.</translation>
    </message>
    <message>
        <source>sorting and filtering …</source>
        <translation>wird sortiert und gefiltert …</translation>
    </message>
    <message>
        <source>%1 of %2 rows</source>
        <translation>%1 von %2 Zeilen</translation>
    </message>
    <message>
        <source>computing …</source>
        <translation>wird berechnet …</translation>
    </message>
    <message>
        <source>%1 rows so far</source>
        <translation>bisher %1 Zeilen</translation>
    </message>
    <message>
        <source>the first %1 rows</source>
        <translation>die ersten %1 Zeilen</translation>
    </message>
    <message>
        <source>all %1 rows</source>
        <translation>alle %1 Zeilen</translation>
    </message>
    <message>
        <source>stopped after %1 rows</source>
        <translation>nach %1 Zeilen angehalten</translation>
    </message>
    <message>
        <source>%1 rows, then an error</source>
        <translation>%1 Zeilen, dann ein Fehler</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>%1, what comes in</source>
        <translation>%1, was ankommt</translation>
    </message>
    <message>
        <source>%1, pin %2</source>
        <translation>%1, Anschluss %2</translation>
    </message>
    <message>
        <source>Export the rows as CSV</source>
        <translation>Die Zeilen als CSV exportieren</translation>
    </message>
    <message>
        <source>CSV files (*.csv);;All files (*)</source>
        <translation>CSV-Dateien (*.csv);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Preview</source>
        <translation>Vorschau</translation>
    </message>
    <message>
        <source>No row has come yet: an action above this pin is still at work, or waits for its file.</source>
        <translation>Noch keine Zeile: Eine Aktion davor arbeitet noch oder wartet auf ihre Datei.</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviewTable</name>
    <message>
        <source>Rows of the preview</source>
        <translation>Zeilen der Vorschau</translation>
    </message>
    <message>
        <source>The number of the row at this pin, counted from 0</source>
        <translation>Die Nummer der Zeile an diesem Anschluss, gezählt ab 0</translation>
    </message>
    <message>
        <source>The rows cannot be read back from the temporary file. Reload them.</source>
        <translation>Die Zeilen lassen sich nicht aus der temporären Datei zurücklesen. Berechnen Sie sie neu.</translation>
    </message>
    <message>
        <source>%1, row %2</source>
        <translation>%1, Zeile %2</translation>
    </message>
    <message>
        <source>&amp;Step to this row</source>
        <translation>&amp;Schritt zu dieser Zeile</translation>
    </message>
    <message>
        <source>&amp;Keep rows like this</source>
        <translation>Zeilen wie diese &amp;behalten</translation>
    </message>
    <message>
        <source>&amp;New column from this</source>
        <translation>&amp;Neue Spalte hieraus</translation>
    </message>
    <message>
        <source>&amp;Rename column …</source>
        <translation>Spalte &amp;umbenennen …</translation>
    </message>
    <message>
        <source>Show the &amp;whole value	Enter</source>
        <translation>Den &amp;ganzen Wert zeigen	Eingabe</translation>
    </message>
    <message>
        <source>&amp;Copy	Ctrl+C</source>
        <translation>&amp;Kopieren	Strg+C</translation>
    </message>
    <message>
        <source>Copy with &amp;headers	Ctrl+Shift+C</source>
        <translation>&amp;Mit Überschriften kopieren	Strg+Umschalt+C</translation>
    </message>
    <message>
        <source>&amp;Filter …	Ctrl+F</source>
        <translation>&amp;Filtern …	Strg+F</translation>
    </message>
    <message>
        <source>Copy the na&amp;me</source>
        <translation>Den Namen ko&amp;pieren</translation>
    </message>
    <message>
        <source>&amp;Copy the column</source>
        <translation>Die Spalte &amp;kopieren</translation>
    </message>
    <message>
        <source>Sort &amp;ascending</source>
        <translation>&amp;Aufsteigend sortieren</translation>
    </message>
    <message>
        <source>Sort &amp;descending</source>
        <translation>Absteigen&amp;d sortieren</translation>
    </message>
    <message>
        <source>&amp;Unsorted</source>
        <translation>Uns&amp;ortiert</translation>
    </message>
    <message>
        <source>This is more than a clipboard holds well (64 MiB). Export the rows as CSV, or choose fewer of them.</source>
        <translation>Das ist mehr, als eine Zwischenablage gut fasst (64 MiB). Exportieren Sie die Zeilen als CSV, oder wählen Sie weniger.</translation>
    </message>
    <message>
        <source>Nothing was copied: the rows cannot be read back from the temporary file. Reload them.</source>
        <translation>Nichts wurde kopiert: Die Zeilen lassen sich nicht aus der temporären Datei zurücklesen. Berechnen Sie sie neu.</translation>
    </message>
    <message>
        <source>%1 rows were written to %2.</source>
        <translation>%1 Zeilen wurden nach %2 geschrieben.</translation>
    </message>
    <message>
        <source>%1 was not written: %2. Choose another file, or free some space on the disk.</source>
        <translation>%1 wurde nicht geschrieben: %2. Wählen Sie eine andere Datei, oder schaffen Sie Platz auf dem Datenträger.</translation>
    </message>
    <message>
        <source>Rows copied: %1</source>
        <translation>Kopierte Zeilen: %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::PreviousFilePage</name>
    <message>
        <source>Where there is a file of that name</source>
        <translation>Wenn es eine Datei dieses Namens gibt</translation>
    </message>
    <message>
        <source>&amp;Keep the old table until the new one is whole</source>
        <translation>Alte Tabelle &amp;behalten, bis die neue vollständig ist</translation>
    </message>
    <message>
        <source>A run that fails leaves the old table. The disk needs space for both.</source>
        <translation>Ein Lauf, der fehlschlägt, lässt die alte Tabelle stehen. Die Festplatte braucht Platz für beide.</translation>
    </message>
    <message>
        <source>&amp;Delete the old file even when there is no row to write</source>
        <translation>Alte Datei auch dann &amp;löschen, wenn es keine Zeile zu schreiben gibt</translation>
    </message>
    <message>
        <source>Seconds to wait for a file in use</source>
        <translation>Sekunden, die auf eine benutzte Datei gewartet wird</translation>
    </message>
    <message>
        <source>When the old file is in use, &amp;wait for</source>
        <translation>Wenn die alte Datei in Gebrauch ist, &amp;warten für</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>In this graph</source>
        <translation>In diesem Graphen</translation>
    </message>
    <message>
        <source>Covers the column-set files as well.</source>
        <translation>Gilt auch für die Dateien der Spaltensätze.</translation>
    </message>
    <message>
        <source>Clean up</source>
        <translation>Aufräumen</translation>
    </message>
    <message>
        <source>Delete the file and its &amp;column sets...</source>
        <translation>Datei und ihre &amp;Spaltensätze löschen...</translation>
    </message>
    <message>
        <source>Refuse a na&amp;me that another action reads or writes</source>
        <translation>Einen &amp;Namen ablehnen, den eine andere Aktion liest oder schreibt</translation>
    </message>
</context>
<context>
    <name>kelvarin::ProblemWalk</name>
    <message>
        <source>There are no problems.</source>
        <translation>Es gibt keine Probleme.</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>Problem %1 of %2: %3</source>
        <translation>Problem %1 von %2: %3</translation>
    </message>
</context>
<context>
    <name>kelvarin::ProfilePanel</name>
    <message>
        <source>Median</source>
        <translation>Median</translation>
    </message>
    <message>
        <source>%1 % are at most</source>
        <translation>%1 % sind höchstens</translation>
    </message>
    <message>
        <source>Most &amp;frequent values</source>
        <translation>&amp;Häufigste Werte</translation>
    </message>
    <message>
        <source>Profile of the column</source>
        <translation>Profil der Spalte</translation>
    </message>
    <message>
        <source>Most frequent values</source>
        <translation>Häufigste Werte</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>Share</source>
        <translation>Anteil</translation>
    </message>
    <message>
        <source>Profile</source>
        <translation>Profil</translation>
    </message>
    <message>
        <source>Choose a cell or a column, and what its values are like appears here.</source>
        <translation>Wählen Sie eine Zelle oder eine Spalte, dann erscheint hier, wie ihre Werte beschaffen sind.</translation>
    </message>
    <message>
        <source>The profile is being computed.</source>
        <translation>Das Profil wird berechnet.</translation>
    </message>
    <message>
        <source>Of %1 rows at hand</source>
        <translation>Von %1 vorliegenden Zeilen</translation>
    </message>
    <message>
        <source>none</source>
        <translation>keine</translation>
    </message>
    <message>
        <source>Null</source>
        <translation>Null</translation>
    </message>
    <message>
        <source>Empty</source>
        <translation>Leer</translation>
    </message>
    <message>
        <source>NaN</source>
        <translation>NaN</translation>
    </message>
    <message>
        <source>Values</source>
        <translation>Werte</translation>
    </message>
    <message>
        <source>Minimum</source>
        <translation>Minimum</translation>
    </message>
    <message>
        <source>Maximum</source>
        <translation>Maximum</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>%1 to %2 bytes</source>
        <translation>%1 bis %2 Bytes</translation>
    </message>
    <message>
        <source>Mean</source>
        <translation>Mittelwert</translation>
    </message>
    <message>
        <source>about %1</source>
        <translation>etwa %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::PropertyPanel</name>
    <message>
        <source>Select an action to see and change its properties.</source>
        <translation>Eine Aktion auswählen, um ihre Eigenschaften zu sehen und zu ändern.</translation>
    </message>
    <message>
        <source>This action is switched off: rows go through it unchanged.</source>
        <translation>Diese Aktion ist ausgeschaltet: Zeilen gehen unverändert hindurch.</translation>
    </message>
</context>
<context>
    <name>kelvarin::QuickAdd</name>
    <message>
        <source>Add an action</source>
        <translation>Eine Aktion hinzufügen</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadArrowEditor</name>
    <message>
        <source>Columns that cannot be read:</source>
        <translation>Spalten, die nicht lesbar sind:</translation>
    </message>
    <message>
        <source>Stop the run</source>
        <translation>Halten den Lauf an</translation>
    </message>
    <message>
        <source>Become JSON text</source>
        <translation>Werden JSON-Text</translation>
    </message>
    <message>
        <source>Leave them out</source>
        <translation>Fallen weg</translation>
    </message>
    <message>
        <source>Parquet files (*.parquet);;All files (*)</source>
        <translation>Parquet-Dateien (*.parquet);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Arrow files (*.arrow *.arrows *.feather *.ipc);;All files (*)</source>
        <translation>Arrow-Dateien (*.arrow *.arrows *.feather *.ipc);;Alle Dateien (*)</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadColumnsPage</name>
    <message>
        <source>Only the columns that are &amp;ticked, in this order</source>
        <translation>Nur die angekreu&amp;zten Spalten, in dieser Reihenfolge</translation>
    </message>
    <message>
        <source>The columns &amp;named in the first column of input pin 1</source>
        <translation>Die Spalten, die in der ersten Spalte des Eingangs 1 ge&amp;nannt sind</translation>
    </message>
    <message>
        <source>Search columns</source>
        <translation>Spalten suchen</translation>
    </message>
    <message>
        <source>Columns of the file</source>
        <translation>Spalten der Datei</translation>
    </message>
    <message>
        <source>All</source>
        <translation>Alle</translation>
    </message>
    <message>
        <source>None</source>
        <translation>Keine</translation>
    </message>
    <message>
        <source>Up</source>
        <translation>Nach oben</translation>
    </message>
    <message>
        <source>Down</source>
        <translation>Nach unten</translation>
    </message>
    <message>
        <source>Ticks all columns that are shown.</source>
        <translation>Kreuzt alle gezeigten Spalten an.</translation>
    </message>
    <message>
        <source>Unticks all columns that are shown.</source>
        <translation>Nimmt die Kreuze aller gezeigten Spalten weg.</translation>
    </message>
    <message>
        <source>Name of a further column</source>
        <translation>Name einer weiteren Spalte</translation>
    </message>
    <message>
        <source>Add</source>
        <translation>Hinzufügen</translation>
    </message>
    <message>
        <source>The columns that input pin 1 names</source>
        <translation>Die Spalten, die Eingang 1 nennt</translation>
    </message>
    <message>
        <source>All columns</source>
        <translation>Alle Spalten</translation>
    </message>
    <message>
        <source>All %1 columns</source>
        <translation>Alle %1 Spalten</translation>
    </message>
    <message>
        <source>No column: tick at least one</source>
        <translation>Keine Spalte: kreuzen Sie mindestens eine an</translation>
    </message>
    <message>
        <source>%1 columns</source>
        <translation>%1 Spalten</translation>
    </message>
    <message>
        <source>%1 of %2 columns</source>
        <translation>%1 von %2 Spalten</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>All &amp;columns</source>
        <translation>Alle &amp;Spalten</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadCsvEditor</name>
    <message>
        <source>First lines of the file</source>
        <translation>Erste Zeilen der Datei</translation>
    </message>
    <message>
        <source>&amp;Separator:</source>
        <translation>&amp;Trennzeichen:</translation>
    </message>
    <message>
        <source>&amp;Quote:</source>
        <translation>An&amp;führungszeichen:</translation>
    </message>
    <message>
        <source>The first line &amp;names the columns</source>
        <translation>Die erste Zeile be&amp;nennt die Spalten</translation>
    </message>
    <message>
        <source>N&amp;ull is written as:</source>
        <translation>N&amp;ULL steht als:</translation>
    </message>
    <message>
        <source>S&amp;orted on:</source>
        <translation>S&amp;ortiert nach:</translation>
    </message>
    <message>
        <source>for instance: id 0, name A</source>
        <translation>zum Beispiel: id 0, name A</translation>
    </message>
    <message>
        <source>As it s&amp;tands</source>
        <translation>&amp;Rohtext</translation>
    </message>
    <message>
        <source>More settings</source>
        <translation>Weiteres</translation>
    </message>
    <message>
        <source>More settings (%1)</source>
        <translation>Weiteres (%1)</translation>
    </message>
    <message>
        <source>CSV files (*.csv *.tsv *.txt);;All files (*)</source>
        <translation>CSV-Dateien (*.csv *.tsv *.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Use these settings</source>
        <translation>Diese Einstellungen verwenden</translation>
    </message>
    <message>
        <source>separator &apos;%1&apos;</source>
        <translation>Trennzeichen &apos;%1&apos;</translation>
    </message>
    <message>
        <source>quote &apos;%1&apos;</source>
        <translation>Anführungszeichen &apos;%1&apos;</translation>
    </message>
    <message>
        <source>with a line of names</source>
        <translation>mit einer Zeile für die Namen</translation>
    </message>
    <message>
        <source>without a line of names</source>
        <translation>ohne eine Zeile für die Namen</translation>
    </message>
    <message>
        <source>UTF-8 with byte order mark</source>
        <translation>UTF-8 mit Byte-Reihenfolge-Marke (BOM)</translation>
    </message>
    <message>
        <source>line ends %1</source>
        <translation>Zeilenenden %1</translation>
    </message>
    <message>
        <source>null is written as &apos;%1&apos;</source>
        <translation>NULL steht als &apos;%1&apos;</translation>
    </message>
    <message>
        <source>The file looks like: %1.</source>
        <translation>Die Datei sieht so aus: %1.</translation>
    </message>
    <message>
        <source>TAB</source>
        <translation>TAB</translation>
    </message>
    <message>
        <source>Encoding:</source>
        <translation>Kodierung:</translation>
    </message>
    <message>
        <source>Further nulls:</source>
        <translation>Weitere Nullwerte:</translation>
    </message>
    <message>
        <source>for instance: NA|n/a</source>
        <translation>zum Beispiel: NA|k. A.</translation>
    </message>
    <message>
        <source>Decimals after:</source>
        <translation>Dezimalzeichen:</translation>
    </message>
    <message>
        <source>Between thousands:</source>
        <translation>Zwischen Tausendern:</translation>
    </message>
    <message>
        <source>Lines to pass over:</source>
        <translation>Zeilen, die übergangen werden:</translation>
    </message>
    <message>
        <source>Comments begin with:</source>
        <translation>Kommentare beginnen mit:</translation>
    </message>
    <message>
        <source>Rows with too few fields:</source>
        <translation>Zeilen mit zu wenigen Feldern:</translation>
    </message>
    <message>
        <source>Rows with too many fields:</source>
        <translation>Zeilen mit zu vielen Feldern:</translation>
    </message>
    <message>
        <source>Column of file names:</source>
        <translation>Spalte der Dateinamen:</translation>
    </message>
    <message>
        <source>decimal comma</source>
        <translation>Dezimalkomma</translation>
    </message>
    <message>
        <source>&apos;%1&apos; between thousands</source>
        <translation>&apos;%1&apos; zwischen Tausendern</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadFilePage</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>&amp;This file:</source>
        <translation>Diese Da&amp;tei:</translation>
    </message>
    <message>
        <source>Columnar file</source>
        <translation>Spaltendatei</translation>
    </message>
    <message>
        <source>Choose a columnar file</source>
        <translation>Spaltendatei wählen</translation>
    </message>
    <message>
        <source>Columnar files (*.cgel_kelvarin);;All files (*)</source>
        <translation>Spaltendateien (*.cgel_kelvarin);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>The files &amp;named in the first column of input pin 0</source>
        <translation>Die Dateien, die in der ersten Spalte des Eingangs 0 ge&amp;nannt sind</translation>
    </message>
    <message>
        <source>In this file</source>
        <translation>In dieser Datei</translation>
    </message>
    <message>
        <source>Checks every block and every value.</source>
        <translation>Prüft jeden Block und jeden Wert.</translation>
    </message>
    <message>
        <source>&amp;Salvage...</source>
        <translation>&amp;Retten...</translation>
    </message>
    <message>
        <source>Writes what is whole to a new table.</source>
        <translation>Schreibt, was heil ist, in eine neue Tabelle.</translation>
    </message>
    <message>
        <source>What is read</source>
        <translation>Was gelesen wird</translation>
    </message>
    <message>
        <source>Choose &amp;columns</source>
        <translation>&amp;Spalten wählen</translation>
    </message>
    <message>
        <source>Skip &amp;blocks</source>
        <translation>Blö&amp;cke überspringen</translation>
    </message>
    <message>
        <source>Looking into the file...</source>
        <translation>Die Datei wird angesehen...</translation>
    </message>
    <message>
        <source>Loo&amp;k again</source>
        <translation>&amp;Erneut nachsehen</translation>
    </message>
    <message>
        <source>Verif&amp;y...</source>
        <translation>Prü&amp;fen...</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadReliabilityPage</name>
    <message>
        <source>When a file is missing</source>
        <translation>Wenn eine Datei fehlt</translation>
    </message>
    <message>
        <source>Seconds to wait for a missing file</source>
        <translation>Sekunden, die auf eine fehlende Datei gewartet wird</translation>
    </message>
    <message>
        <source>Then s&amp;top the run</source>
        <translation>Dann den Lauf anhal&amp;ten</translation>
    </message>
    <message>
        <source>Then s&amp;kip it with a warning</source>
        <translation>Dann mit einer Warnung ü&amp;bergehen</translation>
    </message>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>When a file is not whole</source>
        <translation>Wenn eine Datei nicht heil ist</translation>
    </message>
    <message>
        <source>Read a file that its writer has &amp;not finished, as far as it goes</source>
        <translation>Eine Datei, die &amp;nicht fertig geschrieben ist, so weit wie möglich lesen</translation>
    </message>
    <message>
        <source>Otherwise such a file stops the run.</source>
        <translation>Sonst hält eine solche Datei den Lauf an.</translation>
    </message>
    <message>
        <source>Skip &amp;damaged blocks with a warning</source>
        <translation>Be&amp;schädigte Blöcke mit einer Warnung überspringen</translation>
    </message>
    <message>
        <source>Otherwise damage stops the run.</source>
        <translation>Sonst hält ein Schaden den Lauf an.</translation>
    </message>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Show progress by the &amp;rows of all files</source>
        <translation>Fortschritt nach den &amp;Zeilen aller Dateien zeigen</translation>
    </message>
    <message>
        <source>Looks into all files before the first row. Otherwise the files are counted.</source>
        <translation>Sieht vor der ersten Zeile in alle Dateien. Sonst werden die Dateien gezählt.</translation>
    </message>
    <message>
        <source>&amp;When the source file is unreadable, keep trying to read the file for</source>
        <translation>&amp;Wenn die Quelldatei nicht lesbar ist, weiter versuchen für</translation>
    </message>
</context>
<context>
    <name>kelvarin::ReadTableEditor</name>
    <message>
        <source>Columns to read:</source>
        <translation>Zu lesende Spalten:</translation>
    </message>
    <message>
        <source>all; or for instance: id|price</source>
        <translation>alle; oder zum Beispiel: id|preis</translation>
    </message>
    <message>
        <source>Values that &amp;do not fit:</source>
        <translation>&amp;Werte, die nicht passen:</translation>
    </message>
    <message>
        <source>Stop the run</source>
        <translation>Den Lauf anhalten</translation>
    </message>
    <message>
        <source>Make them null</source>
        <translation>Auf NULL setzen</translation>
    </message>
    <message>
        <source>Colu&amp;mns</source>
        <translation>&amp;Spalten</translation>
    </message>
    <message>
        <source>&amp;Rows</source>
        <translation>&amp;Zeilen</translation>
    </message>
    <message>
        <source>F&amp;ile:</source>
        <translation>Date&amp;i:</translation>
    </message>
    <message>
        <source>Loo&amp;k again</source>
        <translation>&amp;Erneut nachsehen</translation>
    </message>
    <message>
        <source>Looks into the file again, after it has changed.</source>
        <translation>Sieht noch einmal in die Datei, nachdem sie sich geändert hat.</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
    <message>
        <source>Double-click a type, or press F2, to fix it.</source>
        <translation>Auf einen Typ doppelklicken oder F2 drücken, um ihn festzulegen.</translation>
    </message>
    <message>
        <source>Search columns</source>
        <translation>Spalten suchen</translation>
    </message>
    <message>
        <source>First rows</source>
        <translation>Erste Zeilen</translation>
    </message>
    <message>
        <source>Choose the file to read.</source>
        <translation>Die zu lesende Datei wählen.</translation>
    </message>
    <message>
        <source>Looking into the file...</source>
        <translation>Die Datei wird angesehen...</translation>
    </message>
    <message>
        <source>Columns: %1</source>
        <translation>Spalten: %1</translation>
    </message>
</context>
<context>
    <name>kelvarin::RecoveryFile</name>
    <message>
        <source>the folder %1 cannot be made</source>
        <translation>der Ordner %1 kann nicht angelegt werden</translation>
    </message>
    <message>
        <source>the folder %1 cannot be written to</source>
        <translation>in den Ordner %1 kann nicht geschrieben werden</translation>
    </message>
</context>
<context>
    <name>kelvarin::RecoveryOffer</name>
    <message>
        <source>A graph was not saved when the program ended: %1, %2.</source>
        <translation>Ein Graph war nicht gespeichert, als das Programm endete: %1, %2.</translation>
    </message>
    <message numerus="yes">
        <source>%n further</source>
        <translation>
            <numerusform>%n weiterer</numerusform>
            <numerusform>%n weitere</numerusform>
        </translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>Wiederherstellen</translation>
    </message>
    <message>
        <source>Discard</source>
        <translation>Verwerfen</translation>
    </message>
    <message>
        <source>What was not saved of %1 will be lost.</source>
        <translation>Was von %1 nicht gespeichert war, geht verloren.</translation>
    </message>
    <message>
        <source>a new graph</source>
        <translation>ein neuer Graph</translation>
    </message>
    <message>
        <source>No recovery file can be written: %1. Save often until there is one.</source>
        <translation>Es kann keine Wiederherstellungsdatei geschrieben werden: %1. Speichern Sie oft, bis es eine gibt.</translation>
    </message>
    <message>
        <source>This was being typed into &apos;%1&apos;:</source>
        <translation>Das wurde gerade in „%1“ getippt:</translation>
    </message>
</context>
<context>
    <name>kelvarin::RowValuesModel</name>
    <message>
        <source>%1, edited for this row. The data stay as they are.</source>
        <translation>%1, für diese Zeile geändert. Die Daten bleiben, wie sie sind.</translation>
    </message>
    <message>
        <source>The value in the row before, where it was another one</source>
        <translation>Der Wert in der Zeile davor, wo er ein anderer war</translation>
    </message>
    <message>
        <source>Variable</source>
        <translation>Variable</translation>
    </message>
    <message>
        <source>Value</source>
        <translation>Wert</translation>
    </message>
    <message>
        <source>Before</source>
        <translation>Davor</translation>
    </message>
    <message>
        <source>Result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>kelvarin::RunReportModel</name>
    <message>
        <source>done, with a warning</source>
        <translation>fertig, mit einer Warnung</translation>
    </message>
    <message>
        <source>done</source>
        <translation>fertig</translation>
    </message>
    <message>
        <source>failed</source>
        <translation>fehlgeschlagen</translation>
    </message>
    <message>
        <source>stopped</source>
        <translation>angehalten</translation>
    </message>
    <message>
        <source>%1 blocks read, %2 skipped by the block filter</source>
        <translation>%1 Blöcke gelesen, %2 vom Blockfilter übersprungen</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <source>, because of &apos;%1&apos;</source>
        <translation>, wegen &apos;%1&apos;</translation>
    </message>
    <message>
        <source>nulls: %1</source>
        <translation>NULL: %1</translation>
    </message>
    <message>
        <source>NaN: %1</source>
        <translation>NaN: %1</translation>
    </message>
    <message>
        <source>failures: %1</source>
        <translation>Fehler: %1</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 s</translation>
    </message>
    <message>
        <source>Time that the action itself was at work, reading and writing included; work on other threads is not counted</source>
        <translation>Zeit, in der die Aktion selbst gearbeitet hat, Lesen und Schreiben eingeschlossen; Arbeit in anderen Threads zählt nicht</translation>
    </message>
    <message>
        <source>Action</source>
        <translation>Aktion</translation>
    </message>
    <message>
        <source>State</source>
        <translation>Zustand</translation>
    </message>
    <message>
        <source>Rows in</source>
        <translation>Zeilen am Eingang</translation>
    </message>
    <message>
        <source>Rows out</source>
        <translation>Zeilen am Ausgang</translation>
    </message>
    <message>
        <source>Time</source>
        <translation>Zeit</translation>
    </message>
    <message>
        <source>Rows a second</source>
        <translation>Zeilen je Sekunde</translation>
    </message>
</context>
<context>
    <name>kelvarin::RunReportPanel</name>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
    <message>
        <source>Copy the report as text</source>
        <translation>Den Bericht als Text kopieren</translation>
    </message>
    <message>
        <source>&amp;Open folder</source>
        <translation>&amp;Ordner öffnen</translation>
    </message>
    <message>
        <source>Open the folder of the selected file</source>
        <translation>Den Ordner der ausgewählten Datei öffnen</translation>
    </message>
    <message>
        <source>Nothing has been run yet. Run the graph with F5: this shows the rows, the time and the files of each action.</source>
        <translation>Noch ist nichts gelaufen. Den Graphen mit F5 ausführen: Hier erscheinen dann die Zeilen, die Zeit und die Dateien jeder Aktion.</translation>
    </message>
    <message>
        <source>Run report</source>
        <translation>Laufbericht</translation>
    </message>
    <message>
        <source>&amp;Copy the report</source>
        <translation>Bericht &amp;kopieren</translation>
    </message>
</context>
<context>
    <name>kelvarin::SearchField</name>
    <message>
        <source>Search</source>
        <translation>Suchen</translation>
    </message>
</context>
<context>
    <name>kelvarin::StartPage</name>
    <message>
        <source>&amp;New graph</source>
        <translation>&amp;Neuer Graph</translation>
    </message>
    <message>
        <source>&amp;Open ...</source>
        <translation>&amp;Öffnen ...</translation>
    </message>
    <message>
        <source>Or drop a data file here: CSV, Parquet, Arrow or a columnar file. You see its first rows at once.</source>
        <translation>Oder eine Datendatei hier ablegen: CSV, Parquet, Arrow oder eine Spaltendatei. Ihre ersten Zeilen erscheinen sofort.</translation>
    </message>
    <message>
        <source>Draw a graph of actions</source>
        <translation>Einen Graphen aus Aktionen zeichnen</translation>
    </message>
    <message>
        <source>Recent graphs</source>
        <translation>Zuletzt geöffnete Graphen</translation>
    </message>
    <message>
        <source>&amp;Recent graphs</source>
        <translation>&amp;Zuletzt geöffnete Graphen</translation>
    </message>
    <message>
        <source>Examples</source>
        <translation>Beispiele</translation>
    </message>
    <message>
        <source>Take the &amp;tour</source>
        <translation>&amp;Führung beginnen</translation>
    </message>
    <message>
        <source>Five steps through an example; you can leave at any time.</source>
        <translation>Fünf Schritte durch ein Beispiel; Sie können jederzeit aufhören.</translation>
    </message>
</context>
<context>
    <name>kelvarin::TableColumnsModel</name>
    <message>
        <source>Number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Schlüssel</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>%1 (found)</source>
        <translation>%1 (erkannt)</translation>
    </message>
    <message>
        <source>The file has no column of this name.</source>
        <translation>Die Datei hat keine Spalte mit diesem Namen.</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>First values</source>
        <translation>Erste Werte</translation>
    </message>
</context>
<context>
    <name>kelvarin::TableLook</name>
    <message>
        <source>There is no file &apos;%1&apos;.</source>
        <translation>Es gibt keine Datei &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is a folder. Name a file in it.</source>
        <translation>&apos;%1&apos; ist ein Ordner. Eine Datei darin angeben.</translation>
    </message>
    <message>
        <source>&apos;%1&apos; is a pipe or a device: only a run reads it.</source>
        <translation>&apos;%1&apos; ist eine Pipe oder ein Gerät: nur ein Lauf liest daraus.</translation>
    </message>
    <message>
        <source>You may not read the file &apos;%1&apos;. Ask its owner for the permission.</source>
        <translation>Die Datei &apos;%1&apos; darf nicht gelesen werden. Den Eigentümer um die Berechtigung bitten.</translation>
    </message>
    <message>
        <source>The rows come from standard input: only a run reads it.</source>
        <translation>Die Zeilen kommen von der Standardeingabe: nur ein Lauf liest sie.</translation>
    </message>
</context>
<context>
    <name>kelvarin::TableWorkDialog</name>
    <message>
        <source>Progress</source>
        <translation>Fortschritt</translation>
    </message>
    <message>
        <source>Damaged positions</source>
        <translation>Beschädigte Stellen</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Abbrechen</translation>
    </message>
    <message>
        <source>Cancelled.</source>
        <translation>Abgebrochen.</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Schließen</translation>
    </message>
    <message>
        <source>Verify</source>
        <translation>Prüfen</translation>
    </message>
    <message>
        <source>Every block and every value of &apos;%1&apos; is checked.</source>
        <translation>Jeder Block und jeder Wert von &apos;%1&apos; wird geprüft.</translation>
    </message>
    <message>
        <source>%1 more damaged positions are not listed.</source>
        <translation>%1 weitere beschädigte Stellen sind nicht aufgeführt.</translation>
    </message>
    <message>
        <source>Salvage</source>
        <translation>Retten</translation>
    </message>
    <message>
        <source>What is whole in &apos;%1&apos; is written to &apos;%2&apos;.</source>
        <translation>Was in &apos;%1&apos; heil ist, wird nach &apos;%2&apos; geschrieben.</translation>
    </message>
</context>
<context>
    <name>kelvarin::TextDialogs</name>
    <message>
        <source>%1: help</source>
        <translation>%1: Hilfe</translation>
    </message>
    <message>
        <source>Keys</source>
        <translation>Tasten</translation>
    </message>
    <message>
        <source>What it does</source>
        <translation>Was sie tut</translation>
    </message>
    <message>
        <source>Key</source>
        <translation>Taste</translation>
    </message>
    <message>
        <source>Keyboard</source>
        <translation>Tastatur</translation>
    </message>
    <message>
        <source>Where</source>
        <translation>Wo</translation>
    </message>
</context>
<context>
    <name>kelvarin::ThemeMenu</name>
    <message>
        <source>&amp;Theme</source>
        <translation>&amp;Farben</translation>
    </message>
    <message>
        <source>&amp;System</source>
        <translation>&amp;System</translation>
    </message>
    <message>
        <source>&amp;Light</source>
        <translation>&amp;Hell</translation>
    </message>
    <message>
        <source>&amp;Dark</source>
        <translation>&amp;Dunkel</translation>
    </message>
</context>
<context>
    <name>kelvarin::TimeExample</name>
    <message>
        <source>seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>weeks</source>
        <translation>Wochen</translation>
    </message>
    <message>
        <source>The unit is unknown: every elapsed time is 0.</source>
        <translation>Die Einheit ist unbekannt: jede verstrichene Zeit ist 0.</translation>
    </message>
    <message>
        <source>Now it is %1 %2 later.</source>
        <translation>Jetzt ist es %1 %2 später.</translation>
    </message>
    <message>
        <source>No format is given: dates can be neither read nor written.</source>
        <translation>Es ist kein Format angegeben: Datumsangaben lassen sich weder lesen noch schreiben.</translation>
    </message>
    <message>
        <source>Now in this format: %1</source>
        <translation>Jetzt in diesem Format: %1</translation>
    </message>
    <message>
        <source>Elapsed times count from %1 %2.</source>
        <translation>Verstrichene Zeiten zählen ab %1 %2.</translation>
    </message>
</context>
<context>
    <name>kelvarin::TimeParametersPanel</name>
    <message>
        <source>%1 (unknown)</source>
        <translation>%1 (unbekannt)</translation>
    </message>
    <message>
        <source>Current Time</source>
        <translation>Aktuelle Zeit</translation>
    </message>
    <message>
        <source>add &apos;_now&apos; as input var</source>
        <translation>&apos;_now&apos; als Eingabevariable anbieten</translation>
    </message>
    <message>
        <source>_now is the time elapsed since the reference time, a number.</source>
        <translation>_now ist die seit der Bezugszeit verstrichene Zeit, eine Zahl.</translation>
    </message>
    <message>
        <source>add &apos;_nowS&apos; as input var</source>
        <translation>&apos;_nowS&apos; als Eingabevariable anbieten</translation>
    </message>
    <message>
        <source>_nowS is the current time as a text in the date format.</source>
        <translation>_nowS ist die aktuelle Zeit als Text im Datumsformat.</translation>
    </message>
    <message>
        <source>Seconds</source>
        <translation>Sekunden</translation>
    </message>
    <message>
        <source>Minutes</source>
        <translation>Minuten</translation>
    </message>
    <message>
        <source>Hours</source>
        <translation>Stunden</translation>
    </message>
    <message>
        <source>Days</source>
        <translation>Tage</translation>
    </message>
    <message>
        <source>Weeks</source>
        <translation>Wochen</translation>
    </message>
    <message>
        <source>null</source>
        <translation>NULL</translation>
    </message>
    <message>
        <source>the reference time (0)</source>
        <translation>die Bezugszeit (0)</translation>
    </message>
    <message>
        <source>Elapsed Times</source>
        <translation>Verstrichene Zeiten</translation>
    </message>
    <message>
        <source>The instant from which elapsed times count, as yyyyMMdd hh:mm:ss.</source>
        <translation>Der Zeitpunkt, ab dem verstrichene Zeiten zählen, als yyyyMMdd hh:mm:ss.</translation>
    </message>
    <message>
        <source>It is a time in UTC (otherwise: local time)</source>
        <translation>Sie ist eine Zeit in UTC (sonst: Ortszeit)</translation>
    </message>
    <message>
        <source>An empty date input is null (otherwise: 0)</source>
        <translation>Ein leeres Datum ist NULL (sonst: 0)</translation>
    </message>
    <message>
        <source>Elapsed Time Unit:</source>
        <translation>Einheit verstrichener Zeit:</translation>
    </message>
    <message>
        <source>Reference Time:</source>
        <translation>Bezugszeit:</translation>
    </message>
    <message>
        <source>A date before the reference time becomes:</source>
        <translation>Ein Datum vor der Bezugszeit wird:</translation>
    </message>
    <message>
        <source>A date that cannot be read becomes:</source>
        <translation>Ein Datum, das nicht lesbar ist, wird:</translation>
    </message>
    <message>
        <source>as written below</source>
        <translation>wie unten geschrieben</translation>
    </message>
    <message>
        <source>system: short date</source>
        <translation>System: kurzes Datum</translation>
    </message>
    <message>
        <source>system: long date</source>
        <translation>System: langes Datum</translation>
    </message>
    <message>
        <source>system: short time</source>
        <translation>System: kurze Zeit</translation>
    </message>
    <message>
        <source>system: long time</source>
        <translation>System: lange Zeit</translation>
    </message>
    <message>
        <source>system: short date and time</source>
        <translation>System: kurzes Datum mit Zeit</translation>
    </message>
    <message>
        <source>system: long date and time</source>
        <translation>System: langes Datum mit Zeit</translation>
    </message>
    <message>
        <source>Date Texts</source>
        <translation>Datumstexte</translation>
    </message>
    <message>
        <source>Years are yyyy, months MM, days dd, hours hh, minutes mm, seconds ss, a time zone t.</source>
        <translation>Jahre sind yyyy, Monate MM, Tage dd, Stunden hh, Minuten mm, Sekunden ss, eine Zeitzone t.</translation>
    </message>
    <message>
        <source>Dates are in UTC (otherwise: local time)</source>
        <translation>Daten sind in UTC (sonst: Ortszeit)</translation>
    </message>
    <message>
        <source>Date Format:</source>
        <translation>Datumsformat:</translation>
    </message>
    <message>
        <source>Own Format:</source>
        <translation>Eigenes Format:</translation>
    </message>
    <message>
        <source>Random Numbers</source>
        <translation>Zufallszahlen</translation>
    </message>
    <message>
        <source>seed (-1=always a different seed)=</source>
        <translation>Startwert (-1=immer ein anderer)=</translation>
    </message>
</context>
<context>
    <name>kelvarin::TourBubble</name>
    <message>
        <source>Leave (Esc)</source>
        <translation>Aufhören (Esc)</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Zurück</translation>
    </message>
    <message>
        <source>Tour, step %1 of %2</source>
        <translation>Führung, Schritt %1 von %2</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>Weiter</translation>
    </message>
    <message>
        <source>Done</source>
        <translation>Fertig</translation>
    </message>
</context>
<context>
    <name>kelvarin::ValueStrip</name>
    <message>
        <source>Values of the first rows</source>
        <translation>Werte der ersten Zeilen</translation>
    </message>
    <message>
        <source>The number of the row</source>
        <translation>Die Nummer der Zeile</translation>
    </message>
    <message>
        <source>the input has none.</source>
        <translation>die Eingabe hat keine.</translation>
    </message>
    <message>
        <source>those of the input have not arrived.</source>
        <translation>die der Eingabe sind noch nicht da.</translation>
    </message>
    <message>
        <source>the input of the action is not known.</source>
        <translation>die Eingabe der Aktion ist nicht bekannt.</translation>
    </message>
    <message>
        <source>No rows yet: %1</source>
        <translation>Noch keine Zeilen: %1</translation>
    </message>
    <message>
        <source>With the samples of the variables, the result is %1.</source>
        <translation>Mit den Beispielwerten der Variablen ist das Ergebnis %1.</translation>
    </message>
</context>
<context>
    <name>kelvarin::ValueStripModel</name>
    <message>
        <source>result</source>
        <translation>Ergebnis</translation>
    </message>
    <message>
        <source>error</source>
        <translation>Fehler</translation>
    </message>
</context>
<context>
    <name>kelvarin::ValueWindow</name>
    <message>
        <source>%1 characters</source>
        <translation>%1 Zeichen</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Kopieren</translation>
    </message>
</context>
<context>
    <name>kelvarin::VariablesModel</name>
    <message>
        <source>No column is chosen.</source>
        <translation>Es ist keine Spalte gewählt.</translation>
    </message>
    <message>
        <source>Expressions cannot hold the name &apos;%1&apos;. Take letters, digits and _ for the alias.</source>
        <translation>Ausdrücke können den Namen &apos;%1&apos; nicht enthalten. Nehmen Sie für den Alias Buchstaben, Ziffern und _.</translation>
    </message>
    <message>
        <source>_n is the row number. Give the variable another alias, or switch _n off.</source>
        <translation>_n ist die Zeilennummer. Geben Sie der Variablen einen anderen Alias, oder schalten Sie _n ab.</translation>
    </message>
    <message>
        <source>Another variable above is called &apos;%1&apos;, too: expressions see that one.</source>
        <translation>Eine andere Variable weiter oben heißt auch &apos;%1&apos;: Ausdrücke sehen jene.</translation>
    </message>
    <message>
        <source>The input has no column &apos;%1&apos;.</source>
        <translation>Die Eingabe hat keine Spalte &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>The input has no column &apos;%1&apos;. Did you mean &apos;%2&apos;?</source>
        <translation>Die Eingabe hat keine Spalte &apos;%1&apos;. Meinten Sie &apos;%2&apos;?</translation>
    </message>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>Column</source>
        <translation>Spalte</translation>
    </message>
    <message>
        <source>Type</source>
        <translation>Typ</translation>
    </message>
    <message>
        <source>Sample</source>
        <translation>Beispiel</translation>
    </message>
    <message>
        <source>Value (debug):</source>
        <translation>Wert (Debug):</translation>
    </message>
    <message>
        <source>The name in expressions</source>
        <translation>Der Name in Ausdrücken</translation>
    </message>
    <message>
        <source>The column of the input that it is read from</source>
        <translation>Die Spalte der Eingabe, aus der sie gelesen wird</translation>
    </message>
    <message>
        <source>How expressions see it</source>
        <translation>Als was Ausdrücke sie sehen</translation>
    </message>
    <message>
        <source>The value with which the expression is checked where there are no rows</source>
        <translation>Der Wert, mit dem der Ausdruck geprüft wird, wo es keine Zeilen gibt</translation>
    </message>
    <message>
        <source>The value in the row that the step debugger shows</source>
        <translation>Der Wert in der Zeile, die der Debugger zeigt</translation>
    </message>
    <message>
        <source>Number</source>
        <translation>Zahl</translation>
    </message>
    <message>
        <source>Text</source>
        <translation>Text</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Datum</translation>
    </message>
    <message>
        <source>Columns: %1. The last one is read.</source>
        <translation>Spalten: %1. Gelesen wird die letzte.</translation>
    </message>
</context>
<context>
    <name>kelvarin::VariablesPanel</name>
    <message>
        <source>Input variables</source>
        <translation>Eingabevariablen</translation>
    </message>
    <message>
        <source>&amp;Input variables</source>
        <translation>E&amp;ingabevariablen</translation>
    </message>
    <message>
        <source>Add a variable</source>
        <translation>Eine Variable hinzufügen</translation>
    </message>
    <message>
        <source>Add columns of the input...</source>
        <translation>Spalten der Eingabe hinzufügen...</translation>
    </message>
    <message>
        <source>Remove the selected variables</source>
        <translation>Die ausgewählten Variablen entfernen</translation>
    </message>
    <message>
        <source>Move up</source>
        <translation>Nach oben schieben</translation>
    </message>
    <message>
        <source>Move down</source>
        <translation>Nach unten schieben</translation>
    </message>
    <message>
        <source>A&amp;dd all columns that the expression names</source>
        <translation>A&amp;lle Spalten hinzufügen, die im Ausdruck vorkommen</translation>
    </message>
    <message>
        <source>Copy all Column Names to Clipboard</source>
        <translation>Alle Spaltennamen in die Zwischenablage kopieren</translation>
    </message>
    <message>
        <source>The expression names no further column.</source>
        <translation>Im Ausdruck kommt keine weitere Spalte vor.</translation>
    </message>
    <message>
        <source>The columns of the input are being looked up.</source>
        <translation>Die Spalten der Eingabe werden ermittelt.</translation>
    </message>
    <message>
        <source>Nothing is linked to the input, or it has not been read.</source>
        <translation>Mit dem Eingang ist nichts verbunden, oder er wurde nicht gelesen.</translation>
    </message>
    <message>
        <source>The columns of the input are not known, so there are no values. %1 Names of columns can be typed.</source>
        <translation>Die Spalten der Eingabe sind nicht bekannt, deshalb gibt es keine Werte. %1 Namen von Spalten können getippt werden.</translation>
    </message>
</context>
<context>
    <name>kelvarin::VectorsModel</name>
    <message>
        <source>Alias</source>
        <translation>Alias</translation>
    </message>
    <message>
        <source>Length</source>
        <translation>Länge</translation>
    </message>
    <message>
        <source>Columns</source>
        <translation>Spalten</translation>
    </message>
</context>
<context>
    <name>kelvarin::VectorsPanel</name>
    <message>
        <source>Vectors</source>
        <translation>Vektoren</translation>
    </message>
    <message>
        <source>Columns that will be created</source>
        <translation>Spalten, die entstehen werden</translation>
    </message>
    <message>
        <source>The table is being read.</source>
        <translation>Die Tabelle wird gelesen.</translation>
    </message>
    <message>
        <source>The vectors are not known: link a table with the columns AliasName, VarName and castToNumber to pin 1. %1</source>
        <translation>Die Vektoren sind nicht bekannt: verbinden Sie eine Tabelle mit den Spalten AliasName, VarName und castToNumber mit Anschluss 1. %1</translation>
    </message>
    <message>
        <source>Only the first %1 rows of the table are shown.</source>
        <translation>Nur die ersten %1 Zeilen der Tabelle werden gezeigt.</translation>
    </message>
    <message>
        <source>and %1 more</source>
        <translation>und %1 weitere</translation>
    </message>
    <message>
        <source>Vectors and variables</source>
        <translation>Vektoren und Variablen</translation>
    </message>
    <message>
        <source>The vectors of the table on pin 1</source>
        <translation>Die Vektoren der Tabelle an Anschluss 1</translation>
    </message>
    <message>
        <source>New columns</source>
        <translation>Neue Spalten</translation>
    </message>
    <message>
        <source>New columns (%1)</source>
        <translation>Neue Spalten (%1)</translation>
    </message>
</context>
<context>
    <name>kelvarin::WriteBlocksPage</name>
    <message>
        <source>Blocks</source>
        <translation>Blöcke</translation>
    </message>
    <message>
        <source>Rows in a block</source>
        <translation>Zeilen in einem Block</translation>
    </message>
    <message>
        <source>&amp;Rows in a block:</source>
        <translation>&amp;Zeilen in einem Block:</translation>
    </message>
    <message>
        <source>Large blocks compress better; small ones let a reader skip more of the file.</source>
        <translation>Große Blöcke werden besser komprimiert; bei kleinen kann ein Leser mehr von der Datei überspringen.</translation>
    </message>
    <message>
        <source>Speed</source>
        <translation>Geschwindigkeit</translation>
    </message>
    <message>
        <source>Threads that encode</source>
        <translation>Threads, die kodieren</translation>
    </message>
    <message>
        <source>as the host decides</source>
        <translation>wie das Programm entscheidet</translation>
    </message>
    <message>
        <source>&amp;Threads that encode:</source>
        <translation>&amp;Threads, die kodieren:</translation>
    </message>
    <message>
        <source>At one time; the file is the same for any number of them.</source>
        <translation>Zugleich; die Datei ist für jede Anzahl dieselbe.</translation>
    </message>
    <message>
        <source>A million rows make 1 block.</source>
        <translation>Eine Million Zeilen ergibt 1 Block.</translation>
    </message>
    <message>
        <source>A million rows make %1 blocks.</source>
        <translation>Eine Million Zeilen ergibt %1 Blöcke.</translation>
    </message>
    <message>
        <source>%1 With these columns a block takes about %2 before it is encoded, and writing about %3 of memory.</source>
        <translation>%1 Mit diesen Spalten braucht ein Block vor dem Kodieren etwa %2 und das Schreiben etwa %3 Speicher.</translation>
    </message>
</context>
<context>
    <name>kelvarin::WriteColumnsPage</name>
    <message>
        <source>Rows</source>
        <translation>Zeilen</translation>
    </message>
    <message>
        <source>&amp;Write only the rows in which the column</source>
        <translation>Nur die Zeilen &amp;schreiben, in denen die Spalte</translation>
    </message>
    <message>
        <source>Column to test</source>
        <translation>Zu prüfende Spalte</translation>
    </message>
    <message>
        <source>Value that it has</source>
        <translation>Wert, den sie hat</translation>
    </message>
    <message>
        <source>(missing or empty)</source>
        <translation>(fehlt oder leer)</translation>
    </message>
    <message>
        <source>Column sets</source>
        <translation>Spaltensätze</translation>
    </message>
    <message>
        <source>One file beside the main file: best where rows are read whole.</source>
        <translation>Eine Datei neben der Hauptdatei: am besten, wo ganze Zeilen gelesen werden.</translation>
    </message>
    <message>
        <source>A file for each column: written on several threads, read column by column.</source>
        <translation>Eine Datei für jede Spalte: in mehreren Threads geschrieben, Spalte für Spalte gelesen.</translation>
    </message>
    <message>
        <source>Columns and their sets</source>
        <translation>Spalten und ihre Sätze</translation>
    </message>
    <message>
        <source>Number of the set</source>
        <translation>Nummer des Satzes</translation>
    </message>
    <message>
        <source>&amp;Put into set</source>
        <translation>In Sat&amp;z legen</translation>
    </message>
    <message>
        <source>&amp;Do not write</source>
        <translation>&amp;Nicht schreiben</translation>
    </message>
    <message>
        <source>The selected columns; all where none is selected.</source>
        <translation>Die gewählten Spalten; alle, wenn keine gewählt ist.</translation>
    </message>
    <message>
        <source>The columns that reach this action are not known yet.</source>
        <translation>Die Spalten, die diese Aktion erreichen, sind noch nicht bekannt.</translation>
    </message>
    <message>
        <source>has the val&amp;ue</source>
        <translation>den &amp;Wert hat</translation>
    </message>
    <message>
        <source>All columns in one &amp;set</source>
        <translation>Alle Spalten in &amp;einem Satz</translation>
    </message>
    <message>
        <source>A set for each &amp;column</source>
        <translation>Ein Satz für &amp;jede Spalte</translation>
    </message>
    <message>
        <source>The sets of &amp;this list:</source>
        <translation>Die Sätze dieser &amp;Liste:</translation>
    </message>
</context>
<context>
    <name>kelvarin::WriteFilePage</name>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>File to write</source>
        <translation>Zu schreibende Datei</translation>
    </message>
    <message>
        <source>Choose where the columnar file goes</source>
        <translation>Wählen, wohin die Spaltendatei kommt</translation>
    </message>
    <message>
        <source>Columnar files (*.cgel_kelvarin);;All files (*)</source>
        <translation>Spaltendateien (*.cgel_kelvarin);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>&amp;Write the table to:</source>
        <translation>Die Tabelle &amp;schreiben nach:</translation>
    </message>
    <message>
        <source>&amp;Create its folder where it is missing</source>
        <translation>Ihren &amp;Ordner anlegen, wo er fehlt</translation>
    </message>
    <message>
        <source>Number of files</source>
        <translation>Anzahl der Dateien</translation>
    </message>
    <message>
        <source>&amp;One file</source>
        <translation>&amp;Eine Datei</translation>
    </message>
    <message>
        <source>Split into several Kelvarin Gel files. Each file is &amp;maximum:</source>
        <translation>In mehrere Kelvarin-Gel-Dateien aufteilen. Jede Datei ist höchs&amp;tens:</translation>
    </message>
    <message>
        <source>Largest size of a file</source>
        <translation>Größte Dateigröße</translation>
    </message>
    <message>
        <source> MiB</source>
        <translation> MiB</translation>
    </message>
    <message>
        <source>Column to split on</source>
        <translation>Spalte, nach der geteilt wird</translation>
    </message>
    <message>
        <source>&amp;Name the files by an expression over SplitVal:</source>
        <translation>Die Dateien durch einen Ausdruck über SplitVal be&amp;nennen:</translation>
    </message>
    <message>
        <source>SplitVal is the value of the column, as a text.</source>
        <translation>SplitVal ist der Wert der Spalte, als Text.</translation>
    </message>
    <message>
        <source>Naming expression</source>
        <translation>Ausdruck für die Namen</translation>
    </message>
    <message>
        <source>Resulting names</source>
        <translation>Entstehende Namen</translation>
    </message>
    <message>
        <source>The name has no expression. Put %1 where the value belongs.</source>
        <translation>Der Name hat keinen Ausdruck. Schreiben Sie %1 dorthin, wo der Wert stehen soll.</translation>
    </message>
    <message>
        <source>The name has %1 expressions. Change them in the name itself.</source>
        <translation>Der Name hat %1 Ausdrücke. Ändern Sie sie im Namen selbst.</translation>
    </message>
    <message>
        <source>One file for each value of the col&amp;umn:</source>
        <translation>Eine Datei für jeden &amp;Wert der Spalte:</translation>
    </message>
    <message>
        <source>The name keeps its old expression: no text in the new one can begin or end with a plus sign, since that is where expressions in names begin and end.</source>
        <translation>Der Name behält seinen alten Ausdruck: Kein Text im neuen kann mit einem Pluszeichen beginnen oder enden, denn dort beginnen und enden Ausdrücke in Namen.</translation>
    </message>
</context>
<context>
    <name>kelvarin::WriteTableEditor</name>
    <message>
        <source>F&amp;ile:</source>
        <translation>Date&amp;i:</translation>
    </message>
    <message>
        <source>CSV files (*.csv *.tsv *.txt);;All files (*)</source>
        <translation>CSV-Dateien (*.csv *.tsv *.txt);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>Parquet files (*.parquet);;All files (*)</source>
        <translation>Parquet-Dateien (*.parquet);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>&amp;Separator:</source>
        <translation>&amp;Trennzeichen:</translation>
    </message>
    <message>
        <source>&amp;Quote:</source>
        <translation>An&amp;führungszeichen:</translation>
    </message>
    <message>
        <source>The first line &amp;names the columns</source>
        <translation>Die erste Zeile be&amp;nennt die Spalten</translation>
    </message>
    <message>
        <source>N&amp;ull is written as:</source>
        <translation>N&amp;ULL steht als:</translation>
    </message>
    <message>
        <source>Choose the file to write.</source>
        <translation>Die zu schreibende Datei wählen.</translation>
    </message>
    <message>
        <source>The rows go to the standard output of the program.</source>
        <translation>Die Zeilen gehen an die Standardausgabe des Programms.</translation>
    </message>
    <message>
        <source>The rows go to the device or pipe &apos;%1&apos;.</source>
        <translation>Die Zeilen gehen an das Gerät oder die Pipe &apos;%1&apos;.</translation>
    </message>
    <message>
        <source>The file &apos;%1&apos; is replaced when a run has ended well.</source>
        <translation>Die Datei &apos;%1&apos; wird ersetzt, wenn ein Lauf gut beendet ist.</translation>
    </message>
    <message>
        <source>A run makes the file &apos;%1&apos;.</source>
        <translation>Ein Lauf legt die Datei &apos;%1&apos; an.</translation>
    </message>
    <message>
        <source>Arrow files (*.arrow *.arrows *.feather *.ipc);;All files (*)</source>
        <translation>Arrow-Dateien (*.arrow *.arrows *.feather *.ipc);;Alle Dateien (*)</translation>
    </message>
    <message>
        <source>F&amp;orm:</source>
        <translation>F&amp;orm:</translation>
    </message>
    <message>
        <source>By the name of the file</source>
        <translation>Nach dem Namen der Datei</translation>
    </message>
    <message>
        <source>File</source>
        <translation>Datei</translation>
    </message>
    <message>
        <source>Stream</source>
        <translation>Strom</translation>
    </message>
    <message>
        <source>Values that &amp;do not fit:</source>
        <translation>&amp;Werte, die nicht passen:</translation>
    </message>
    <message>
        <source>Stop the run</source>
        <translation>Den Lauf anhalten</translation>
    </message>
    <message>
        <source>Make them null</source>
        <translation>Auf NULL setzen</translation>
    </message>
    <message>
        <source>Ma&amp;ke the folder of the file</source>
        <translation>Ordner der Datei an&amp;legen</translation>
    </message>
    <message>
        <source>W&amp;rite:</source>
        <translation>Sch&amp;reiben:</translation>
    </message>
    <message>
        <source>One file</source>
        <translation>Eine Datei</translation>
    </message>
    <message>
        <source>A file for each value of a column</source>
        <translation>Eine Datei je Wert einer Spalte</translation>
    </message>
    <message>
        <source>Colu&amp;mn of the values:</source>
        <translation>Spalte der W&amp;erte:</translation>
    </message>
    <message>
        <source>A run makes files of the names &apos;%1&apos;, and replaces those that are there.</source>
        <translation>Ein Lauf legt Dateien mit den Namen &apos;%1&apos; an und ersetzt vorhandene.</translation>
    </message>
</context>
<context>
    <name>kelvarin::WrittenColumnsView</name>
    <message>
        <source>Search columns</source>
        <translation>Spalten suchen</translation>
    </message>
    <message>
        <source>Columns that are written</source>
        <translation>Spalten, die geschrieben werden</translation>
    </message>
    <message>
        <source>The type that the chosen column gets in the file.</source>
        <translation>Der Typ, den die gewählte Spalte in der Datei bekommt.</translation>
    </message>
    <message>
        <source>By the type of the column</source>
        <translation>Nach dem Typ der Spalte</translation>
    </message>
    <message>
        <source>&amp;Type in the file:</source>
        <translation>T&amp;yp in der Datei:</translation>
    </message>
    <message>
        <source>Type in the file</source>
        <translation>Typ in der Datei</translation>
    </message>
    <message>
        <source>Columns that are written, in this order: %1</source>
        <translation>Spalten, die geschrieben werden, in dieser Reihenfolge: %1</translation>
    </message>
    <message>
        <source>Finding out which columns are written...</source>
        <translation>Es wird ermittelt, welche Spalten geschrieben werden...</translation>
    </message>
    <message>
        <source>Which columns are written shows when rows are linked to this action.</source>
        <translation>Welche Spalten geschrieben werden, zeigt sich, wenn Zeilen mit dieser Aktion verbunden sind.</translation>
    </message>
    <message>
        <source>%1 (%2)</source>
        <comment>a column and its type</comment>
        <translation>%1 (%2)</translation>
    </message>
    <message>
        <source>%1 (%2), in the file %3</source>
        <comment>a column and its types</comment>
        <translation>%1 (%2), in der Datei %3</translation>
    </message>
    <message>
        <source>%1, in the file %2</source>
        <comment>a column and its type in the file</comment>
        <translation>%1, in der Datei %2</translation>
    </message>
    <message>
        <source>The table has no column of this name.</source>
        <translation>Die Tabelle hat keine Spalte dieses Namens.</translation>
    </message>
</context>
</TS>
