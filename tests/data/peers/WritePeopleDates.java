// Writes instants as people's software shows them, with Java's localized
// formats in four locales: java.time's ofLocalizedDate / ofLocalizedDateTime
// and java.text's DateFormat and SimpleDateFormat defaults.
// Reads "seconds<SPACE>IANA zone" lines on stdin; writes
// "index<TAB>writer<TAB>locale<TAB>pattern<TAB>zone text<TAB>text" lines, the
// pattern being the writer's own (DateTimeFormatterBuilder's localized
// pattern, SimpleDateFormat.toPattern) and the zone text what its zone field
// alone writes ("-": none). Run by tests/data/gen_people_dates.py.
import java.io.BufferedReader;
import java.io.InputStreamReader;
import java.text.DateFormat;
import java.text.SimpleDateFormat;
import java.time.Instant;
import java.time.ZoneId;
import java.time.ZonedDateTime;
import java.time.chrono.IsoChronology;
import java.time.format.DateTimeFormatter;
import java.time.format.DateTimeFormatterBuilder;
import java.time.format.FormatStyle;
import java.util.ArrayList;
import java.util.Date;
import java.util.List;
import java.util.Locale;
import java.util.TimeZone;

public class WritePeopleDates {
  private static final Locale[] LOCALES = {Locale.US, Locale.UK, Locale.GERMANY, Locale.JAPAN};
  // Date and time styles of ofLocalizedDateTime; a null time: ofLocalizedDate.
  private static final FormatStyle[][] STYLES = {
    {FormatStyle.FULL, null}, {FormatStyle.LONG, null}, {FormatStyle.MEDIUM, null},
    {FormatStyle.SHORT, null}, {FormatStyle.MEDIUM, FormatStyle.MEDIUM},
    {FormatStyle.SHORT, FormatStyle.SHORT}, {FormatStyle.MEDIUM, FormatStyle.SHORT},
    {FormatStyle.LONG, FormatStyle.LONG}, {FormatStyle.FULL, FormatStyle.FULL},
    {FormatStyle.FULL, FormatStyle.LONG},
  };

  public static void main(String[] args) throws Exception {
    BufferedReader in = new BufferedReader(new InputStreamReader(System.in, "UTF-8"));
    StringBuilder out = new StringBuilder();
    int index = 0;
    for (String line; (line = in.readLine()) != null; index++) {
      String[] f = line.trim().split(" ");
      Instant instant = Instant.ofEpochSecond(Long.parseLong(f[0]));
      ZoneId zone = ZoneId.of(f[1]);
      TimeZone.setDefault(TimeZone.getTimeZone(zone));
      ZonedDateTime zoned = ZonedDateTime.ofInstant(instant, zone);
      Date date = Date.from(instant);
      for (Locale locale : LOCALES) {
        for (FormatStyle[] s : STYLES) {
          DateTimeFormatter formatter = s[1] == null
              ? DateTimeFormatter.ofLocalizedDate(s[0]) : DateTimeFormatter.ofLocalizedDateTime(s[0], s[1]);
          String pattern = DateTimeFormatterBuilder.getLocalizedDateTimePattern(
              s[0], s[1], IsoChronology.INSTANCE, locale);
          String zoneToken = zoneToken(pattern);
          String zoneText = zoneToken == null ? "-"
              : DateTimeFormatter.ofPattern(zoneToken, locale).format(zoned);
          String writer = s[1] == null ? "ofLocalizedDate(" + s[0] + ")"
              : "ofLocalizedDateTime(" + s[0] + "," + s[1] + ")";
          print(out, index, "java " + writer, locale, pattern, zoneText,
                formatter.withLocale(locale).format(zoned));
        }
        Locale.setDefault(Locale.Category.FORMAT, locale);
        SimpleDateFormat plain = new SimpleDateFormat();
        legacy(out, index, "java new SimpleDateFormat()", locale, plain, date);
        legacy(out, index, "java DateFormat.getDateTimeInstance()", locale,
               (SimpleDateFormat) DateFormat.getDateTimeInstance(), date);
        legacy(out, index, "java DateFormat.getDateTimeInstance(LONG,LONG)", locale,
               (SimpleDateFormat) DateFormat.getDateTimeInstance(DateFormat.LONG, DateFormat.LONG), date);
      }
    }
    System.out.print(out);
  }

  private static void legacy(StringBuilder out, int index, String writer, Locale locale,
                             SimpleDateFormat format, Date date) {
    String pattern = format.toPattern();
    String zoneToken = zoneToken(pattern);
    String zoneText = "-";
    if (zoneToken != null) {
      SimpleDateFormat zoneOnly = new SimpleDateFormat(zoneToken, locale);
      zoneOnly.setTimeZone(format.getTimeZone());
      zoneText = zoneOnly.format(date);
    }
    print(out, index, writer, locale, pattern, zoneText, format.format(date));
  }

  // The pattern's zone field (a run of z, Z, O, v, V, x or X outside quotes), or null.
  private static String zoneToken(String pattern) {
    List<String> tokens = new ArrayList<>();
    boolean quoted = false;
    for (int i = 0; i < pattern.length(); i++) {
      char c = pattern.charAt(i);
      if (c == '\'') {
        quoted = !quoted;
      } else if (!quoted && "zZOvVxX".indexOf(c) >= 0) {
        int j = i;
        while (j < pattern.length() && pattern.charAt(j) == c) j++;
        tokens.add(pattern.substring(i, j));
        i = j - 1;
      }
    }
    if (tokens.size() > 1) throw new IllegalStateException("two zone fields in " + pattern);
    return tokens.isEmpty() ? null : tokens.get(0);
  }

  private static void print(StringBuilder out, int index, String writer, Locale locale,
                            String pattern, String zoneText, String text) {
    out.append(index).append('\t').append(writer).append('\t')
       .append(locale.toLanguageTag()).append('\t').append(pattern)
       .append('\t').append(zoneText).append('\t').append(text).append('\n');
  }
}
