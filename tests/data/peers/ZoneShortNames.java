// Writes the short zone names Java writes in Locale.US (java.util.Date's
// toString, the 'z' pattern letter) for every zone ID it knows:
// "id<TAB>standard name<TAB>seconds east<TAB>daylight name<TAB>seconds east"
// lines, the daylight pair "-<TAB>-" for a zone that keeps no daylight time
// under its present rules. Run by tests/data/gen_zone_names.py.
import java.util.Arrays;
import java.util.Locale;
import java.util.TimeZone;

public class ZoneShortNames {
  public static void main(String[] args) {
    String[] ids = TimeZone.getAvailableIDs();
    Arrays.sort(ids);
    for (String id : ids) {
      TimeZone zone = TimeZone.getTimeZone(id);
      int standard = zone.getRawOffset() / 1000;
      String line = id + "\t" + zone.getDisplayName(false, TimeZone.SHORT, Locale.US) + "\t" + standard;
      if (zone.useDaylightTime()) {
        int daylight = standard + zone.getDSTSavings() / 1000;
        line += "\t" + zone.getDisplayName(true, TimeZone.SHORT, Locale.US) + "\t" + daylight;
      } else {
        line += "\t-\t-";
      }
      System.out.println(line);
    }
  }
}
