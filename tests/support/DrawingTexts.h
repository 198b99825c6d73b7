// DrawingTexts.h - texts as they stand in drawings, in all scripts that the code pages serve.
#ifndef TV_TEST_DRAWING_TEXTS_H
#define TV_TEST_DRAWING_TEXTS_H

#include "TvCodePages.h"

/// A text and a code page that has all its characters.
struct DrawingText {
    code_page_id page;
    const wchar_t* text;
};

inline const DrawingText kDrawingTexts[] = {
    // Dimensions and codes of the drawing program, plain ASCII.
    {CP_ASCII, L"5'-6 1/2\""},
    {CP_ASCII, L"%%c25 H7/g6"},
    {CP_ASCII, L"45%%d"},
    {CP_ASCII, L"R12.5 TYP. 4 PLACES"},
    {CP_ASCII, L"SCALE 1:50 @ A1"},
    {CP_ASCII, L"{\\H2.5x;\\S1#2;} NOTE\\P1. ALL DIMENSIONS IN mm"},
    {CP_ASCII, L"\\A1;\\fArial|b0|i0|c0|p34;TITLE"},
    {CP_ASCII, L"C:\\PROJECTS\\HALL\\XREF\\grid.dwg"},
    {CP_ASCII, L"A-WALL-FULL_DEMO"},
    {CP_ASCII, L"N 37%%d46'29\" W"},
    {CP_ASCII, L"~`!@#$^&*()_+-=[]{}|;':,./<>?"},
    {CP_ASCII, L" "},
    // Western Europe.
    {CP_ANSI_1252, L"Ø25 ±0,05"},
    {CP_ANSI_1252, L"90° ± 0°30'"},
    {CP_ANSI_1252, L"12 m² × 3,5 m = 42 m³"},
    {CP_ANSI_1252, L"Wände tragend – Außenmaß prüfen!"},
    {CP_ANSI_1252, L"Façade côté forêt, élévation générale"},
    {CP_ANSI_1252, L"Œuvre: échelle 1/100"},
    {CP_ANSI_1252, L"Año 1998 ¿Está acotado? ¡Sí!"},
    {CP_ANSI_1252, L"Secção transversal, cotas em milímetros"},
    {CP_ANSI_1252, L"Überzug über Öffnung, Größe 1,20 × 2,10"},
    {CP_ANSI_1252, L"Målestokk 1:20 – rømningsvei på øverste etasje"},
    {CP_ANSI_1252, L"„Schnitt A–A“ … ‰ Gefälle"},
    {CP_ISO8859_1, L"Éléments préfabriqués; épaisseur 20 µm"},
    {CP_ISO8859_1, L"Mátvælageymsla, hæð 2,70 m, þak"},
    {CP_ISO8859_9, L"Şehir planı, ölçek 1/500, çizgi ağı"},
    // Central Europe.
    {CP_ANSI_1250, L"Řez B–B, měřítko 1:50, tloušťka zdi 450"},
    {CP_ANSI_1250, L"Rzut piętra, ściana żelbetowa, łącznik"},
    {CP_ANSI_1250, L"Földszinti alaprajz, fűtőtest, őrhely"},
    {CP_ANSI_1250, L"Půdorys přízemí – žádné kóty v žlutém"},
    {CP_ANSI_1250, L"Tlocrt podruma, šljunak, žbuka, đubrište"},
    {CP_ANSI_1250, L"Ťažisko, ľahký betón, ŕňa, ĺ"},
    {CP_ISO8859_2, L"Załącznik: wężeł cieplny, ćwierć"},
    {CP_DOS852, L"Příčný řez ├──┤ šířka ═══ 2,40"},
    // Cyrillic.
    {CP_ANSI_1251, L"План этажа на отм. +3,300"},
    {CP_ANSI_1251, L"Сечение А–А, масштаб 1:100, лист №4"},
    {CP_ANSI_1251, L"Стены_несущие"},
    {CP_ANSI_1251, L"Підлога: бетон, їдальня, ґанок, є"},
    {CP_ANSI_1251, L"Дошка: ўкладка, ёмістасць"},
    {CP_ANSI_1251, L"Љубав, Њива, Ђорђе, Џеп, ћевап"},
    {CP_ANSI_1251, L"Допуск ±0,02 мм; угол 45°; сталь 12Х18Н10Т"},
    {CP_ISO8859_5, L"Спецификация оборудования, ведомость отделки"},
    {CP_DOS866, L"╔══════╗ Экспликация помещений ║"},
    {CP_DOS855, L"Генплан: съёмка, дорога, щит"},
    // Greek.
    {CP_ANSI_1253, L"Κάτοψη ισογείου, κλίμακα 1:50"},
    {CP_ANSI_1253, L"Τομή Α–Α, ύψος ορόφου 3,20 μ"},
    {CP_ANSI_1253, L"Ελάχιστο πάχος ±5°, δοκός Φ12"},
    {CP_ISO8859_7, L"Όψη νότια, μέτρα, ΰλη, ϊ ϋ ΐ"},
    {CP_DOS869, L"Σχέδιο όψης, άξονας"},
    // Turkish.
    {CP_ANSI_1254, L"Zemin kat planı, ölçek 1/50"},
    {CP_ANSI_1254, L"Kesit İ–İ, ığdır, şap, çatı eğimi %33"},
    {CP_DOS857, L"Görünüş ─ cephe ğ ı ş İ"},
    // Hebrew and Arabic.
    {CP_ANSI_1255, L"תכנית קומת קרקע, קנה מידה 1:50"},
    {CP_ANSI_1255, L"חתך א–א, ±0.00"},
    {CP_ISO8859_8, L"קיר נושא, מפלס 3.30+"},
    {CP_ANSI_1256, L"مخطط الطابق الارضي، مقياس 1:50"},
    {CP_ANSI_1256, L"قطاع ا–ا، سمك الجدار"},
    {CP_ISO8859_6, L"واجهة المبنى؛ ارتفاع؟"},
    // Baltic.
    {CP_ANSI_1257, L"Pirmo aukšto planas, mastelis 1:100, žingsnis"},
    {CP_ANSI_1257, L"Šķērsgriezums, mērogs, grīda, ēka, ļoti"},
    {CP_ANSI_1257, L"Põhiplaan, mõõtkava 1:50, šahtide lõiked"},
    {CP_ISO8859_4, L"Ūdensvads, kāpnes, ģipsis, ņemt"},
    {CP_ISO8859_3, L"Ċentru tal-pjanta, ħajt, ġnien, żona"},
    // Thai; Vietnamese has no table, its letters are escapes.
    {CP_ANSI_874, L"แปลนพื้นชั้นล่าง มาตราส่วน 1:50"},
    {CP_ANSI_874, L"รูปตัด ก–ก หน้าต่าง ๑๒๓"},
    {CP_UTF8, L"Mặt bằng tầng trệt, tỷ lệ 1:50, độ dốc"},
    {CP_UTF8, L"Chiều cao tường ± 5 ₫"},
    // Code pages of DOS and Mac OS.
    {CP_DOS437, L"┌─┬─┐ │ß│π│ └─┴─┘ ≥ ≤ ≈ ² ½"},
    {CP_DOS850, L"Maß ½ × ¾ ║ Ø12 ±1"},
    {CP_DOS860, L"Secção, orçamento, Ônibus ─"},
    {CP_DOS861, L"Þak, veggþykkt, öryggi, æð"},
    {CP_DOS863, L"Élévation, fenêtre à côté, ça"},
    {CP_DOS865, L"Målestok, rækværk, døråbning"},
    {CP_MAC_ROMAN, L"Pianta piano terra – qualità ≤ 5 √2 ≈ 1,41 ∞"},
    {CP_MAC_ROMAN, L"∆ quota, ∑ aree, π r, ƒ(x) ≠ 0"},
    // Japanese.
    {CP_ANSI_932, L"平面図　縮尺１：１００"},
    {CP_ANSI_932, L"寸法は㎜とする。±０．５"},
    {CP_ANSI_932, L"表題欄：設計者　能勢　ソフト"},
    {CP_ANSI_932, L"ﾎﾞﾙﾄ M12×45 ﾄﾙｸ管理"},
    {CP_ANSI_932, L"鉄筋D13@200、かぶり厚さ40"},
    {CP_ANSI_932, L"レイヤー_壁・建具（１階）"},
    {CP_ANSI_932, L"断面図Ａ－Ａ　①②③　㈱山田設計"},
    {CP_ANSI_932, L"髙橋・﨑山　Ⅲ期工事　№５"},
    {CP_DOS932, L"仕上表：床　フローリング　ァ"},
    // Simplified Chinese.
    {CP_ANSI_936, L"一层平面图 比例1:100"},
    {CP_ANSI_936, L"说明：１．本图尺寸以毫米计，标高以米计。"},
    {CP_ANSI_936, L"墙体厚度２４０，砖M10"},
    {CP_ANSI_936, L"钢筋Ⅱ级　Φ12@150　混凝土C30"},
    {CP_ANSI_936, L"图层_轴线_標高_朱镕基"},
    {CP_ANSI_936, L"①～⑩轴立面图 ±0.000"},
    {CP_ANSI_936, L"设备表：风机、水泵（见附图）℃"},
    {CP_GB2312, L"审核 校对 制图 日期"},
    // Korean.
    {CP_ANSI_949, L"1층 평면도 축척 1:100"},
    {CP_ANSI_949, L"주기사항: 모든 치수는 밀리미터임"},
    {CP_ANSI_949, L"철근콘크리트 벽체 두께 200㎜"},
    {CP_ANSI_949, L"뚫린 구멍, 똠방, 펌프실, 쀍"},
    {CP_ANSI_949, L"단면도 Ａ－Ａ　①　㈜한국설계　圖面"},
    {CP_KSC5601, L"도면층_창호_문"},
    // Traditional Chinese.
    {CP_ANSI_950, L"一樓平面圖　比例1:100"},
    {CP_ANSI_950, L"說明：尺寸單位為公分，高程單位為公尺。"},
    {CP_ANSI_950, L"功能許可蓋章，成品育樓"},
    {CP_ANSI_950, L"鋼筋混凝土牆厚２０㎝　±０"},
    {CP_ANSI_950, L"圖層＿門窗＿標註　℃　§"},
    {CP_BIG5, L"設計 繪圖 校核 業主"},
    // Mixed scripts and what no code page has.
    {CP_UTF8, L"Plan План 图 図 도면 Κάτοψη תכנית مخطط แปลน"},
    {CP_UTF8, L"⌀25 ⏥ 0,02 ⟂ Ⓜ ∅ ≤ ∆ €100"},
    {CP_UTF8, L"℄ ⅊ — cœur ≠ coeur; ﬁn"},
    {CP_UTF8, L"नक्शा, ਨਕਸ਼ਾ, வரைபடம், ഭൂപടം"},
    {CP_UTF8, L"ნახაზი, Գծագիր, ᠵᠢᠷᠤᠭ, ແຜນຜັງ, ប្លង់"},
    {CP_UTF8, L"x\u0301 A\u030A \u200Bx\u00ADy\uFEFF \u0080\u009F"},
};

#endif
