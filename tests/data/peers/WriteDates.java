// Writes each instant given as arguments ("seconds.nanoseconds", nanoseconds
// 0..999999999) with Java's date classes, in the default zone (from TZ):
// "label<TAB>index<TAB>text" lines. Run by tests/data/gen_software_dates.py
// as `java WriteDates.java ...`.
import java.time.Instant;
import java.time.OffsetDateTime;
import java.time.ZoneId;
import java.time.ZonedDateTime;
import java.time.format.DateTimeFormatter;
import java.util.Date;
import java.util.Locale;

public class WriteDates {
  public static void main(String[] args) {
    Locale.setDefault(Locale.US);
    ZoneId zone = ZoneId.systemDefault();
    for (int i = 0; i < args.length; i++) {
      String[] parts = args[i].split("\\.");
      Instant instant = Instant.ofEpochSecond(Long.parseLong(parts[0]), Long.parseLong(parts[1]));
      ZonedDateTime zoned = ZonedDateTime.ofInstant(instant, zone);
      print("java.Date", i, new Date(instant.toEpochMilli()).toString());
      print("java.ZonedDateTime", i, zoned.toString());
      print("java.OffsetDateTime", i, OffsetDateTime.ofInstant(instant, zone).toString());
      print("java.Instant", i, instant.toString());
      print("java.RFC_1123_DATE_TIME", i, DateTimeFormatter.RFC_1123_DATE_TIME.format(zoned));
    }
  }

  private static void print(String label, int index, String text) {
    System.out.println(label + "\t" + index + "\t" + text);
  }
}
