// Letters by frequency, as any count over running text gives them; a few thousand words are enough.
#include <cstdint>

#include "platform/unicode/language_letters.h"

namespace kelspar {

namespace {

constexpr LanguageLetters kLetters[] = {
    {"de", u"üäöß"},
    {"fr", u"éèàêçôûîùâœïëÿ"},
    {"es", u"óíáéñúü"},
    {"pt", u"ãçáéíõóêâúàôü"},
    {"it", u"èàòùéì"},
    {"nl", u"ëéïèöüê"},
    {"sv", u"äåöé"},
    {"da", u"øåæé"},
    {"fi", u"äöå"},
    {"is", u"áðíéþóæöúý"},
    {"en", u"éèñïêç"},
    {"pl", u"ęłóążśćńź"},
    {"cs", u"íáěéýřčžšůúťňóď"},
    {"sk", u"áíéčžšýľúťôňäóďŕĺ"},
    {"hu", u"áéöóőíüúű"},
    {"ro", u"ăîâșțşţ"},
    {"hr", u"čšžćđ"},
    {"lt", u"ėšžųįčūąę"},
    {"lv", u"āīēšļūžņķģč"},
    {"et", u"äõüöšž"},
    {"tr", u"ıüşğçöâîû"},
    {"mt", u"ħġżċàòùì"},
    {"cy", u"ŵŷâôîêëïáòẁẃ"},
    {"ga", u"áéíóú"},
    {"ca", u"àéèíïóòúüç"},
    {"vi", u"\u0323\u0301\u0300đâôươêă\u0309\u0303áàéèóòúùíìãõ"},
    {"ru", u"оеаинтсрвлкмдпуяыьгзбчйхжшюцщэфъё"},
    {"uk", u"оанивтрсеікдлпумязьбгйчхжїшцщюєґф"},
    {"bg", u"аоиетнрсвлкдпмзубяъгчжшцщйхфюь"},
    {"sr", u"аоиенстрјувдкплмзбгћчцшжхђљњфџ"},
    {"el", u"αοιετνσρκπμλςυηίόάέγδχωήθύφώβξζψϊϋΐΰ"},
    {"he", u"יוהלאתרבמשםנחדקפעטכגצזסןץךף"},
    {"ar", u"اليمنوترةبدسعفهكقحجأشىصإخطذضزثئغءظآؤ"},
    {"fa", u"ایردنوهتمبسشکلزفگعخقجحپصطچضغذثژظئآ"},
    {"th", u"านรก่อเงมยลวด้สตทปบะขหคแพจผถชโใไณธศษซ์ีิัืุูำ็"},
};

// Windows pages stand for the ISO ones that they hold. What is left of the Macintosh and of DOS is
// rare in mail. Latin 10 has s and t with a comma where the Central European pages have them with a
// cedilla, at the same bytes: Romanian is written with commas, so that page is hardly dearer.
constexpr CodePageLanguages kPages[] = {
    {12, 0, "de fr es pt it nl sv da fi is en ca ga cy"},
    {0x8000020F, 3, "de fr es pt it nl sv da fi is en et"},
    {30, 9, "de fr es pt it sv da is"},
    {0x80000410, 9, "de fr es pt it sv da is"},
    {15, 2, "pl cs sk hu ro hr"},
    {9, 3, "pl cs sk hu ro hr"},
    {0x80000412, 12, "pl cs sk hu ro hr"},
    {0x8000001D, 14, "pl cs sk hu hr"},
    {0x80000210, 3, "ro"},
    {11, 0, "ru uk bg sr"},
    {0x80000A02, 1, "ru bg"},
    {0x80000A08, 2, "uk"},
    {0x80000205, 3, "ru uk bg sr"},
    {0x8000041B, 8, "ru uk"},
    {0x80000413, 12, "ru uk bg sr"},
    {0x80000007, 10, "ru uk bg sr"},
    {13, 1, "el"},
    {0x80000207, 2, "el"},
    {0x80000405, 14, "el"},
    {14, 2, "tr"},
    {0x80000415, 14, "he"},
    {0x80000505, 1, "he"},
    {0x80000208, 2, "he"},
    {0x80000506, 1, "ar fa"},
    {0x80000206, 3, "ar"},
    {0x80000507, 2, "lt lv et"},
    {0x8000020D, 4, "lt lv"},
    {0x80000204, 6, "lv lt"},
    {0x8000020A, 8, "is lt"},
    {0x80000508, 2, "vi"},
    {0x8000041D, 1, "th"},
    {0x80000203, 6, "mt"},
    {0x8000020E, 4, "cy ga"},
};

}  // namespace

std::span<const LanguageLetters> languageLetters() { return kLetters; }
std::span<const CodePageLanguages> codePageLanguages() { return kPages; }

const std::u16string_view kFrequentSimplified =
    u"的一是不了在人有我他这个们中来上大为和国地到以说时要就出会可也你对生能而子那得于着下自之年过"
    u"发后作里用道行"
    u"所然家种事成方多经么去法学如都同现当没动面起看定天分还进好小部其些主样理心她本前开但因只从想"
    u"实日军者意无力"
    u"它与长把机十民第公此已工使情明性知全三又关点正业外将两高间由问很最重并物手应战向头文体政美相"
    u"见被利什二等产"
    u"或新己制身果加西斯月话合回特代内信表化老给世位次度门任常先海通教儿原东声提立及比员解水名真论"
    u"处走义各入几口"
    u"认条平系气题活尔更别打女变四神总何电数安少报才结反受目太量再感建务做接必场件计管期市直德资命"
    u"山金指克许统区"
    u"保至队形社便空决治展马科司五基眼书非则听白却界达光放强即像难且权思王象完设式色路记南品住告类"
    u"求据程北边死张"
    u"该交规万取拉格望觉术领共确传师观清今切院让识候带导争运您邮请网收订单户";
const std::u16string_view kFrequentTraditional =
    u"的一是不了在人有我他這個們中來上大為和國地到以說時要就出會可也你對生能而子那得於著下自之年過"
    u"發後作裡用道行"
    u"所然家種事成方多經麼去法學如都同現當沒動面起看定天分還進好小部其些主樣理心她本前開但因只從想"
    u"實日軍者意無力"
    u"它與長把機十民第公此已工使情明性知全三又關點正業外將兩高間由問很最重並物手應戰向頭文體政美相"
    u"見被利什二等產"
    u"或新己制身果加西斯月話合回特代內信表化老給世位次度門任常先海通教兒原東聲提立及比員解水名真論"
    u"處走義各入幾口"
    u"認條平系氣題活爾更別打女變四神總何電數安少報才結反受目太量再感建務做接必場件計管期市直德資命"
    u"山金指克許統區"
    u"保至隊形社便空決治展馬科司五基眼書非則聽白卻界達光放強即像難且權思王象完設式色路記南品住告類"
    u"求據程北邊死張"
    u"該交規萬取拉格望覺術領共確傳師觀清今切院讓識候帶導爭運您郵請網收訂單戶";
const std::u16string_view kFrequentKanji =
    u"日一人大年中会国本上出行分者時事月自生社方後前間地見学何同手今新発東場所思対合高定的下入長力"
    u"物動気部性田作業"
    u"体通明現市金問用最家言実山当法表意理関全度水外化内公円立数名代小回第要不文目情成海心品書知教"
    u"子約開全機取主電"
    u"先来平戦使私持京話報員政三二十受信送件様願致御返";
const std::u16string_view kFrequentHangul =
    u"이다는에의을가고하지기로은한사도를리자으서니아시인어그것해정대있부나들전스수일라게제안보과장"
    u"원국상조주구"
    u"여면만우성었오비공용마민관선치년세화무생동적회되했유신모경방학위해드습할소내영문물간물터체개"
    u"없며까실출계와"
    u"당단김연발음않금같분진남말요입재트러데통미중결합니저야또때려업바르했번두았외감알려운거히심양"
    u"메편현";

}  // namespace kelspar
