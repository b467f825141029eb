# Makes every CSV file and every chart of this folder from the package `datasets` that comes with R.
#
#   Rscript extract.R [FOLDER]        (default: the folder that is current)
#
# Tables are written in long form: one value per row, its labels in the columns before it. A value
# that was not measured is an empty field. Only base R is used. The numbers are R's own, except for
# the yearly figures of the share indices and the correlations, which are computed here.

arguments <- commandArgs(trailingOnly = TRUE)
if (length(arguments) > 0) setwd(arguments[1])

# ---- tables ---------------------------------------------------------------------------------------

write_table <- function(data, name) {
  factors <- vapply(data, is.factor, logical(1))
  data[factors] <- lapply(data[factors], as.character)
  write.csv(data, paste0(name, ".csv"), row.names = FALSE, quote = FALSE, na = "", eol = "\n")
}

# A time series as rows of year, season and value.
long_series <- function(series, seasons) {
  years <- floor(time(series) + 1e-6)
  data.frame(year = as.integer(years), season = seasons[cycle(series)], value = as.vector(series))
}

decade_of <- function(year) paste0(year %/% 10 * 10, "s")

series_table <- function(series, name, column, seasons = month.abb, label = "month") {
  data <- long_series(series, seasons)
  data <- data.frame(decade = decade_of(data$year), data)
  names(data) <- c("decade", "year", label, column)
  write_table(data, name)
}

series_table(sunspots, "sunspots", "sunspots")
series_table(co2, "co2", "ppm")
series_table(nottem, "nottingham", "fahrenheit")
series_table(UKgas, "gas", "therms", paste0("Q", 1:4), "quarter")

# Road casualties: the four counts that are comparable.
casualties <- c("Car drivers" = "drivers", "Front-seat passengers" = "front",
                "Rear-seat passengers" = "rear", "Van drivers killed" = "VanKilled")
roads <- do.call(rbind, lapply(names(casualties), function(label) {
  data <- long_series(Seatbelts[, casualties[[label]]], month.abb)
  data.frame(group = label, year = data$year, month = data$season, persons = data$value)
}))
write_table(roads, "road-casualties")

# Share indices: what each year was like.
stocks <- data.frame(year = as.integer(floor(time(EuStockMarkets) + 1e-6)), EuStockMarkets)
by_year <- do.call(rbind, lapply(split(stocks, stocks$year), function(part) {
  do.call(rbind, lapply(colnames(EuStockMarkets), function(index) {
    values <- part[[index]]
    data.frame(index = index, year = part$year[1], days = length(values),
               lowest = min(values), highest = max(values),
               mean = round(mean(values), 3), median = round(median(values), 3),
               change = round(100 * (values[length(values)] / values[1] - 1), 3))
  }))
}))
write_table(by_year[order(match(by_year$index, colnames(EuStockMarkets)), by_year$year), ], "shares")

titanic <- as.data.frame(Titanic)
names(titanic) <- c("class", "sex", "age", "survived", "persons")
write_table(titanic, "titanic")

admissions <- as.data.frame(UCBAdmissions)
names(admissions) <- c("admission", "gender", "department", "applicants")
write_table(admissions, "admissions")

hair <- as.data.frame(HairEyeColor)
names(hair) <- c("hair", "eyes", "sex", "students")
write_table(hair, "hair-and-eyes")

cancer <- data.frame(age = esoph$agegp, alcohol = esoph$alcgp, tobacco = esoph$tobgp,
                     cases = esoph$ncases, controls = esoph$ncontrols)
cancer$alcohol <- sub("g/day", "", cancer$alcohol)
cancer$tobacco <- sub("g/day", "", cancer$tobacco)
write_table(cancer, "oesophagus")

air <- data.frame(month = month.name[airquality$Month], day = airquality$Day,
                  ozone = airquality$Ozone, radiation = airquality$Solar.R,
                  wind = airquality$Wind, temperature = airquality$Temp)
write_table(air, "air")

# Correlations between the four measures, each pair over the days that have both.
measures <- c("Ozone" = "ozone", "Solar radiation" = "radiation", "Wind" = "wind",
              "Temperature" = "temperature")
pairs <- expand.grid(second = names(measures), first = names(measures), stringsAsFactors = FALSE)
correlations <- do.call(rbind, lapply(seq_len(nrow(pairs)), function(row) {
  x <- air[[measures[[pairs$first[row]]]]]
  y <- air[[measures[[pairs$second[row]]]]]
  same <- pairs$first[row] == pairs$second[row]
  test <- if (same) NULL else cor.test(x, y)
  data.frame(first = pairs$first[row], second = pairs$second[row],
             correlation = if (same) 1 else signif(unname(test$estimate), 6),
             significance = if (same) NA else signif(test$p.value, 6),
             days = sum(complete.cases(x, y)))
}))
write_table(correlations, "air-correlations")

# ---- charts ---------------------------------------------------------------------------------------

# Okabe and Ito's colours, told apart with any colour vision; lines differ in their type as well.
blue <- "#0072B2"
vermilion <- "#D55E00"
green <- "#009E73"
purple <- "#CC79A7"
ink <- "#222222"
faint <- "#E3E3E3"

chart <- function(name, title, note, draw, width = 8, height = 4.5, margins = c(4.2, 4.4, 4.2, 1.2)) {
  svg(paste0(name, ".svg"), width = width, height = height, family = "DejaVu Sans", bg = "white")
  par(mar = margins, las = 1, bty = "n", tcl = -0.25, mgp = c(2.6, 0.55, 0), cex.axis = 0.85,
      cex.lab = 0.9, col.axis = ink, col.lab = ink, fg = "#777777")
  draw()
  mtext(title, side = 3, line = 2.2, adj = 0, font = 2, cex = 1.15, col = ink)
  mtext(note, side = 3, line = 0.9, adj = 0, cex = 0.85, col = "#555555")
  invisible(dev.off())
  # Hundredths of a point are finer than any screen, and make the file half as long.
  path <- paste0(name, ".svg")
  writeLines(gsub("(\\.[0-9]{2})[0-9]+", "\\1", readLines(path)), path)
}

frame <- function(x, y, xlab, ylab) {
  plot(x, y, type = "n", xlab = xlab, ylab = ylab)
  abline(h = axTicks(2), col = faint)
}

chart("sunspots", "Sunspots come and go in eleven years", "Mean relative number, by month, 1749 to 1983",
      function() {
        frame(time(sunspots), sunspots, "Year", "Sunspot number")
        lines(sunspots, col = adjustcolor(blue, 0.45), lwd = 0.7)
        lines(as.vector(time(sunspots)), stats::filter(sunspots, rep(1 / 13, 13)), col = blue, lwd = 1.6)
      }, width = 9)

chart("co2", "Carbon dioxide rises, and breathes with the seasons",
      "Mauna Loa, Hawaii: monthly, and the mean of twelve months", function() {
        frame(time(co2), co2, "Year", "Parts per million")
        lines(co2, col = blue, lwd = 1.1)
        lines(as.vector(time(co2)), stats::filter(co2, c(0.5, rep(1, 11), 0.5) / 12), col = vermilion,
              lwd = 2.2, lty = 2)
        legend("topleft", c("month", "mean of twelve months"), col = c(blue, vermilion), lwd = c(1.1, 2.2),
               lty = c(1, 2), bty = "n", cex = 0.85, text.col = ink)
      })

chart("road-casualties", "Fewer drivers were hurt after seat belts became law",
      "Car drivers killed or seriously injured in Great Britain, by month", function() {
        drivers <- Seatbelts[, "drivers"]
        frame(time(drivers), drivers, "Year", "Persons per month")
        lines(drivers, col = blue, lwd = 1.4)
        abline(v = 1983 + 30 / 365, col = vermilion, lty = 2, lwd = 1.6)
        text(1982.9, max(drivers) * 0.99, "31 January 1983:\nbelts compulsory", adj = c(1, 1), cex = 0.8,
             col = vermilion)
      })

chart("shares", "Four share indices, 1991 to 1998", "First day = 100, logarithmic scale", function() {
  indexed <- 100 * sweep(as.matrix(EuStockMarkets), 2, EuStockMarkets[1, ], "/")
  days <- as.vector(time(EuStockMarkets))
  # Every fifth trading day: a week is enough for a line of this width.
  weekly <- seq(1, nrow(indexed), by = 5)
  plot(range(days), range(indexed), type = "n", log = "y", xlab = "Year", ylab = "Index")
  abline(h = axTicks(2), col = faint)
  colors <- c(blue, vermilion, green, purple)
  for (i in 1:4) lines(days[weekly], indexed[weekly, i], col = colors[i], lwd = 1.7, lty = i)
  legend("topleft", colnames(EuStockMarkets), col = colors, lwd = 1.7, lty = 1:4, bty = "n", cex = 0.85,
         text.col = ink, seg.len = 3)
})

chart("titanic", "Who survived the Titanic", "Per cent of each class, women and men, children included",
      function() {
        counts <- apply(Titanic, c("Class", "Sex", "Survived"), sum)
        rates <- 100 * counts[, , "Yes"] / apply(counts, 1:2, sum)
        bars <- barplot(t(rates[, c("Female", "Male")]), beside = TRUE, col = c(vermilion, blue), border = NA,
                        ylim = c(0, 108), ylab = "Per cent", xlab = "Class", density = c(NA, NA))
        text(bars, t(rates[, c("Female", "Male")]) + 4, sprintf("%.0f %%", t(rates[, c("Female", "Male")])),
             cex = 0.8, col = ink)
        legend("topright", c("women", "men"), fill = c(vermilion, blue), border = NA, bty = "n", cex = 0.85,
               text.col = ink)
      })

chart("air", "Hot, still days are the days with ozone", "New York, May to September 1973: each circle is a day",
      function() {
        days <- airquality[complete.cases(airquality$Ozone), ]
        frame(days$Temp, days$Ozone, "Highest temperature (degrees Fahrenheit)", "Ozone (parts per billion)")
        symbols(days$Temp, days$Ozone, circles = days$Wind, inches = 0.11, add = TRUE,
                bg = adjustcolor(blue, 0.35), fg = blue)
        lines(lowess(days$Temp, days$Ozone), col = vermilion, lwd = 2.2, lty = 2)
        legend("topleft", c("the larger, the more wind", "smoothed"), pch = c(21, NA), pt.bg = adjustcolor(blue, 0.35),
               col = c(blue, vermilion), lty = c(NA, 2), lwd = c(1, 2.2), bty = "n", cex = 0.85, text.col = ink)
      })

chart("oesophagus", "Alcohol and tobacco together", "Cases per hundred persons of the study, by daily consumption",
      function() {
        cases <- xtabs(ncases ~ tobgp + alcgp, esoph)
        everybody <- cases + xtabs(ncontrols ~ tobgp + alcgp, esoph)
        share <- 100 * cases / everybody
        shades <- c("#CFE3F1", "#86BBDD", "#3D8FC4", "#0B4F7D")
        barplot(share, beside = TRUE, col = shades, border = NA, xlab = "Alcohol (grams a day)",
                ylab = "Cases per hundred", ylim = c(0, max(share) * 1.1),
                names.arg = sub("g/day", "", colnames(cases)))
        legend("topleft", sub("g/day", "", rownames(cases)), fill = shades, border = NA, bty = "n", cex = 0.85,
               title = "Tobacco (grams a day)", text.col = ink)
      })
